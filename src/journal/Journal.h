#pragma once
// The journal of the execute runs: before the first byte of a run its plan is made durable,
// after the last write a closing record. Which writes landed is decided from the files
// themselves (each place holds either the old or the new bytes), so a run needs no record
// per file. One file per run, 0600 in a 0700 folder; the newest kJournalKept are kept.

#include <QByteArray>
#include <QDateTime>
#include <QIODevice>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

#include "platform/files/FolderItem.h"
#include "platform/files/Patch.h"

constexpr int kJournalKept = 20;

// One file of a run: what it was before the first byte, and what the run does to it.
struct JournalFile {
    QByteArray path;  // the file system's bytes
    quint64 device = 0, inode = 0, size = 0;
    FileTime modification;  // before the run
    std::optional<FileTime> birth;
    std::optional<FileTime> modificationAfter;  // what the run leaves, where it sets it
    std::optional<FileTime> creationAfter;      // where the run sets it (not on Linux)
    std::vector<Patch> patches;
};

struct JournalRun {
    enum State { Interrupted, Done, Undone };
    qint64 started = 0;  // ms since the epoch
    QString offset;      // as the window showed it
    int dates = 0;       // the dates the run changes
    qint64 fileCount = 0;
    std::vector<JournalFile> files;  // empty in a summary

    State state = Interrupted;
    bool left = false;  // interrupted, and the user chose to leave it so
};

// The encoded plan and records, and reading them back. Reading never trusts a size the
// bytes claim and never throws; a cut, corrupt or newer journal gives nothing and why.
QByteArray encodePlan(const JournalRun& run);
std::optional<JournalRun> decodeJournal(const QByteArray& bytes, QString* why);
// The run's time, counts, offset and state, without its files; the plan is not checked.
std::optional<JournalRun> readJournalSummary(QIODevice& in, QString* why);

// A run in the journal folder.
struct JournalEntry {
    QString fileName;          // its file, in journalFolder()
    std::optional<JournalRun> run;  // its summary; nothing where the journal cannot be read
    QString why;               // then why
};

class Journal {
public:
    // $XDG_STATE_HOME/velkaro (~/.local/state/velkaro), the application-data folder
    // on macOS and Windows.
    static QString folder();

    // Writes the plan of a run and makes it durable (the file and its folder synced);
    // false, with why naming the place, where it cannot. Prunes the oldest runs.
    bool begin(const JournalRun& run, QString* why);
    // The closing record of the run begun; false with why where it cannot be written.
    bool close(QString* why);
    const QString& fileName() const { return fileName_; }

    // The kept runs, newest first, as summaries.
    static std::vector<JournalEntry> runs();
    // The whole run in that file, its files and changes checked.
    static JournalEntry read(const QString& fileName);
    // Appends a record to the run in that file: its state, or that it was left interrupted.
    static bool mark(const QString& fileName, JournalRun::State state, bool left, QString* why);

private:
    QString fileName_;
};
