#pragma once
#include <QObject>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>
#include <thread>

#include "platform/files/FolderItem.h"
#include "platform/pictures/ScaledPicture.h"

// Decodes pictures for showing small on a thread of its own, so that the event loop never
// waits for a decode. It keeps one request at a time: a new request replaces one that the
// worker has not begun yet. Each picture decoded is handed to its request's `done` on the
// thread that made the worker, through its event loop; whether it is still wanted then is
// for `done` to decide. The decode itself touches nothing but the file it reads (a
// FolderItem is its path's bytes, shared safely between threads).
class PictureWorker : public QObject {
    Q_OBJECT
public:
    using Decoder = std::function<ScaledPicture(const FolderItem& f, QSize box)>;
    using Done = std::function<void(const ScaledPicture& picture)>;

    explicit PictureWorker(QObject* parent = nullptr);
    ~PictureWorker() override;  // waits for a decode under way; nothing more is handed back

    void request(const FolderItem& f, QSize box, Done done);

signals:
    // After each picture was handed to its `done`, wanted or not.
    void handedBack();

private:
    struct Queue;
    void run();

    std::shared_ptr<Queue> queue_;
    std::thread thread_;
};

// How the worker decodes: openScaledPicture, unless a test puts a decoder of its own in
// its place. An empty decoder restores openScaledPicture.
void setPictureDecoder(PictureWorker::Decoder decoder);
