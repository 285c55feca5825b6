#include "platform/pictures/PictureWorker.h"

#include <condition_variable>
#include <mutex>
#include <optional>

namespace {

std::mutex decoderMutex;
PictureWorker::Decoder& installedDecoder()
{
    static PictureWorker::Decoder decoder;
    return decoder;
}

ScaledPicture decode(const FolderItem& f, QSize box)
{
    PictureWorker::Decoder decoder;
    {
        const std::lock_guard lock(decoderMutex);
        decoder = installedDecoder();
    }
    return decoder ? decoder(f, box) : openScaledPicture(f, box);
}

}  // namespace

void setPictureDecoder(PictureWorker::Decoder decoder)
{
    const std::lock_guard lock(decoderMutex);
    installedDecoder() = std::move(decoder);
}

struct PictureWorker::Queue {
    struct Job {
        FolderItem file;
        QSize box;
        Done done;
    };
    std::mutex mutex;
    std::condition_variable wake;
    std::optional<Job> next;  // the one request not begun yet
    bool stopping = false;
};

PictureWorker::PictureWorker(QObject* parent) : QObject(parent), queue_(std::make_shared<Queue>())
{
    thread_ = std::thread([this] { run(); });
}

PictureWorker::~PictureWorker()
{
    {
        const std::lock_guard lock(queue_->mutex);
        queue_->stopping = true;
        queue_->next.reset();
    }
    queue_->wake.notify_one();
    thread_.join();
}

void PictureWorker::request(const FolderItem& f, QSize box, Done done)
{
    {
        const std::lock_guard lock(queue_->mutex);
        queue_->next = Queue::Job{f, box, std::move(done)};
    }
    queue_->wake.notify_one();
}

void PictureWorker::run()
{
    for (;;) {
        Queue::Job job;
        {
            std::unique_lock lock(queue_->mutex);
            queue_->wake.wait(lock, [&] { return queue_->stopping || queue_->next.has_value(); });
            if (queue_->stopping)
                return;
            job = std::move(*queue_->next);
            queue_->next.reset();
        }
        ScaledPicture picture;
        try {
            picture = decode(job.file, job.box);
        } catch (...) {
            // No picture to be had, as for a file that holds none: the pane stays empty.
        }
        // Runs on this object's thread; a posted call dies with the object.
        QMetaObject::invokeMethod(
            this,
            [this, done = std::move(job.done), picture = std::move(picture)] {
                done(picture);
                emit handedBack();
            },
            Qt::QueuedConnection);
    }
}

#include "moc_PictureWorker.cpp"
