#include "platform/files/ReadAhead.h"

#include "platform/files/FolderItem.h"

#include <algorithm>

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#endif

namespace {

std::atomic<ReadAhead::Policy> policy{ReadAhead::Policy::WhenCold};

#if !defined(_WIN32)
// Opens a regular file for reading, -1 for anything else; a pipe or a device is never
// opened, so that nothing waits and no device is disturbed.
int openRegular(const QByteArray& path)
{
    struct stat st;
    if (::stat(path.constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return -1;
    return ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
}

// Whether the file's first byte is in the page cache: a read that may not wait says so.
// Where the system can't tell, the file counts as cached and nothing is read ahead.
bool cached(const QByteArray& path)
{
#if defined(RWF_NOWAIT)
    const int fd = openRegular(path);
    if (fd < 0)
        return true;
    char byte;
    struct iovec v = {&byte, 1};
    const bool waits = ::preadv2(fd, &v, 1, 0, RWF_NOWAIT) < 0 && errno == EAGAIN;
    ::close(fd);
    return !waits;
#else
    (void)path;
    return true;
#endif
}
#endif

}  // namespace

void ReadAhead::setPolicy(Policy p) { policy = p; }

ReadAhead::ReadAhead(const std::vector<FolderItem>& items)
{
#if !defined(_WIN32)
    const Policy p = policy;
    if (p == Policy::Never || items.size() < 2)
        return;
    // A warm cache is told by the first file, before any other work.
    const auto first = std::find_if(items.begin(), items.end(), [](const FolderItem& f) { return !f.isNil(); });
    if (first == items.end() || (p == Policy::WhenCold && cached(first->nativePath())))
        return;
    paths_.reserve(items.size());
    for (const FolderItem& f : items)
        if (!f.isNil())
            paths_.push_back(f.nativePath());
    const size_t n = std::min<size_t>(kThreads, paths_.size());
    threads_.reserve(n);
    for (size_t i = 0; i < n; ++i)
        threads_.emplace_back([this] { run(); });
#else
    (void)items;
#endif
}

ReadAhead::~ReadAhead()
{
    next_ = paths_.size();
    for (std::thread& t : threads_)
        t.join();
}

void ReadAhead::run()
{
#if !defined(_WIN32)
    char block[kBlock];
    for (size_t i = next_++; i < paths_.size(); i = next_++) {
        const int fd = openRegular(paths_[i]);
        if (fd < 0)
            continue;
        while (::pread(fd, block, sizeof block, 0) < 0 && errno == EINTR) {
        }
        ::close(fd);
    }
#endif
}
