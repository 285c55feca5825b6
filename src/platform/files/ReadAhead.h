#pragma once
#include <QByteArray>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

class FolderItem;

// Reading ahead for a walk over many files on a cold disk. Made before the walk, it reads
// the first block of every regular file given, in the given order, on a small pool of
// threads that issue their reads at the same time, so that the walk, which reads one file
// after the other, finds them in the page cache instead of waiting for each read in turn.
// Where the first file can be read without waiting for the disk, the cache is taken to be
// warm and nothing is started. The reads go to the page cache and nowhere else: the walk
// sees the same bytes with or without them. Only regular files are opened, never waiting.
class ReadAhead {
public:
    enum class Policy { WhenCold, Always, Never };
    static constexpr int kThreads = 32;
    // The page that listing reads first, and no more: a larger first read makes the
    // kernel read that much more of every file ahead too (64 KiB for 16 KiB asked), which
    // a cold disk pays for in full.
    static constexpr int kBlock = 4096;

    explicit ReadAhead(const std::vector<FolderItem>& items);
    ~ReadAhead();  // reads not started are dropped; waits for those under way
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // WhenCold unless a test or a benchmark asks otherwise.
    static void setPolicy(Policy policy);

private:
    void run();

    std::vector<QByteArray> paths_;
    std::atomic<size_t> next_{0};
    std::vector<std::thread> threads_;
};
