// Bytes and files: memory blocks, streams on files read and written in place, and the file
// items that name them.

#include "platform/files/BinaryStream.h"
#include "platform/base/Exceptions.h"
#include "platform/files/FolderItem.h"
#include "platform/files/MemoryBlock.h"
#include "platform/files/PinnedItem.h"

#include <QLocalServer>
#include <QtTest>

#include <bit>
#include <fcntl.h>
#include <sys/stat.h>

namespace {
const QByteArray kDate("2001:02:03 04:05:06");

// The text of the NilObjectException that use() throws.
template <class F>
QString nilText(F use)
{
    try {
        use();
    } catch (const NilObjectException& e) {
        return QString::fromUtf8(e.what());
    }
    return QStringLiteral("(nothing thrown)");
}

// Bytes that differ from their neighbours, so a read from the wrong place shows.
QByteArray pattern(int size)
{
    QByteArray b(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        b[i] = char((i * 7 + i / 251) % 251);
    return b;
}
}  // namespace

// A block of 8 0xAA bytes after setStringValue(offset, length, bytes); empty: the range throws.
struct BlockString { qint64 offset, length; QByteArray bytes, expected; };
struct StreamRead { int size; quint64 position; qint64 count; int got; };
// 256 bytes read at readAt first, as the reader does, then the bytes written at a position.
struct StreamWrite { quint64 readAt, position; QByteArray bytes; bool written; };
Q_DECLARE_METATYPE(BlockString)
Q_DECLARE_METATYPE(StreamRead)
Q_DECLARE_METATYPE(StreamWrite)

class TestFiles : public QObject {
    Q_OBJECT
    // Beside the test rather than in /tmp, which may be a file system that records no birth.
    QTemporaryDir dir_{QDir::currentPath() + "/files-XXXXXX"};
    int files_ = 0;

    QString makeFile(const QByteArray& bytes)
    {
        QFile f(dir_.filePath(QString::number(++files_)));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("cannot make a test file");
        return f.fileName();
    }

private slots:
    void blockStrings_data()
    {
        QTest::addColumn<BlockString>("c");
        QTest::newRow("short string leaves the rest zero") << BlockString{2, 4, "ab", QByteArray("\xaa\xaa" "ab\0\0\xaa\xaa", 8)};
        QTest::newRow("empty range at the end") << BlockString{8, 0, "x", QByteArray(8, '\xaa')};
        QTest::newRow("range past the end") << BlockString{6, 3, "xyz", {}};
        QTest::newRow("offset -1") << BlockString{-1, 2, "x", {}};
        QTest::newRow("negative length") << BlockString{0, -1, "x", {}};
        QTest::newRow("offset + length wraps") << BlockString{std::numeric_limits<qint64>::max() - 1, 4, "x", {}};
    }
    void blockStrings()
    {
        QFETCH(BlockString, c);
        MemoryBlock mb(8);
        QCOMPARE(mb.StringValue(0, 8), QByteArray(8, '\0'));  // zero-filled when made
        mb.setStringValue(0, 8, QByteArray(8, '\xaa'));
        if (c.expected.isEmpty()) {
            QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, mb.setStringValue(c.offset, c.length, c.bytes));
            QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, mb.StringValue(c.offset, c.length));
        } else {
            mb.setStringValue(c.offset, c.length, c.bytes);
        }
        QCOMPARE(mb.StringValue(0, 8), c.expected.isEmpty() ? QByteArray(8, '\xaa') : c.expected);
    }

    void streamReads_data()
    {
        QTest::addColumn<StreamRead>("c");
        QTest::newRow("short read at the end") << StreamRead{300, 290, 20, 10};
        QTest::newRow("empty past the end") << StreamRead{300, 5000, 4, 0};
        QTest::newRow("across a window boundary") << StreamRead{20000, 8190, 12, 12};
        QTest::newRow("large read cut at the end") << StreamRead{40000, 20000, 1000000000000, 20000};
        QTest::newRow("negative count") << StreamRead{300, 10, -1, 0};
    }
    void streamReads()
    {
        QFETCH(StreamRead, c);
        const QByteArray bytes = pattern(c.size);
        // A stream over the same bytes in memory reads as the file does.
        for (auto bs : {FolderItem(makeFile(bytes)).OpenAsBinaryFile(false), BinaryStream::overBytes(bytes)}) {
            QCOMPARE(bs->Length(), quint64(c.size));
            bs->Read(16);  // something cached first, as the reader does
            bs->setPosition(c.position);
            const QByteArray expected = c.got ? bytes.mid(qsizetype(c.position), c.got) : QByteArray();
            QCOMPARE(bs->Read(c.count), expected);
            QCOMPARE(bs->Position(), c.position + quint64(c.got));
            // The view reads alike, from the window or, for a large read, from its own copy.
            bs->setPosition(c.position);
            QCOMPARE(bs->ReadView(c.count).toByteArray(), expected);
            QCOMPARE(bs->Position(), c.position + quint64(c.got));
        }
    }

    // Bytes missing at the end count as zero; the position moves by the bytes there were.
    void numbersShortOfTheEnd()
    {
        const QByteArray bytes = QByteArray::fromHex("12343ff8");
        for (auto bs : {FolderItem(makeFile(bytes)).OpenAsBinaryFile(false), BinaryStream::overBytes(bytes)}) {
            bs->setPosition(3);
            QCOMPARE(bs->ReadUInt16(), quint16(0xf800));
            QCOMPARE(bs->Position(), 4ULL);
            bs->setPosition(1);
            QCOMPARE(std::bit_cast<quint64>(bs->ReadDouble()), 0x343ff80000000000ULL);
            QCOMPARE(bs->Position(), 4ULL);
            QVERIFY(!bs->Write("x"));  // both read-only
        }
    }

    void streamWrites_data()
    {
        QTest::addColumn<StreamWrite>("c");
        QTest::newRow("inside the cached bytes") << StreamWrite{0, 100, kDate, true};
        QTest::newRow("over the end of the cached page") << StreamWrite{0, 4090, kDate, true};
        QTest::newRow("over the start of the cached bytes") << StreamWrite{8200, 8190, kDate, true};
        QTest::newRow("ending at the end of the file") << StreamWrite{0, 19981, kDate, true};
        QTest::newRow("one byte beyond the end") << StreamWrite{19900, 19982, kDate, false};
        QTest::newRow("empty at the end") << StreamWrite{0, 20000, {}, true};
    }
    void streamWrites()
    {
        QFETCH(StreamWrite, c);
        const QByteArray before = pattern(20000);
        const QByteArray after = c.written ? QByteArray(before).replace(qsizetype(c.position), c.bytes.size(), c.bytes) : before;
        QFile file(makeFile(before));
        auto bs = FolderItem(file.fileName()).OpenAsBinaryFile(true);
        bs->setPosition(c.readAt);
        bs->Read(256);
        bs->setPosition(c.position);
        QCOMPARE(bs->Write(c.bytes), c.written);
        QCOMPARE(bs->Position(), c.written ? c.position + quint64(c.bytes.size()) : c.position);
        // The same stream reads what the file holds, at both ends of the bytes written.
        for (quint64 at : {c.readAt, c.position - 3, c.position + quint64(c.bytes.size()) - 5}) {
            bs->setPosition(at);
            QCOMPARE(bs->Read(8), after.mid(qsizetype(at), 8));
        }
        bs = nullptr;  // releases the file
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), after);
    }

    // Only regular files make streams; a refused stream says why, and its use throws that.
    void openings_data()
    {
        QTest::addColumn<QByteArray>("bytes");  // a file's, or what the item is: <folder>, <fifo>, <socket>, <missing>
        QTest::addColumn<QString>("why");  // "" for a stream; %open says how it was to be opened
        QTest::newRow("a file.jpg") << QByteArray("bytes") << "";
        QTest::newRow("folder.png") << QByteArray("<folder>") << "“folder.png” is a folder, not a file.";
        // No open may wait for a writer.
        QTest::newRow("fifo") << QByteArray("<fifo>") << "“fifo” is not an ordinary file.";
        QTest::newRow("socket") << QByteArray("<socket>") << "“socket” is not an ordinary file.";
        QTest::newRow("missing, and not made") << QByteArray("<missing>")
                                               << "“missing, and not made” %open; it may have been moved or deleted.";
    }
    void openings()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, why);
        QLocalServer listening;
        const QString path = dir_.filePath(QTest::currentDataTag());
        if (bytes == "<folder>")
            QVERIFY(QDir().mkpath(path));
        else if (bytes == "<fifo>")
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        else if (bytes == "<socket>")
            QVERIFY(listening.listen(path));
        else if (bytes != "<missing>")
            QVERIFY(QFile::rename(makeFile(bytes), path));
        const FolderItem f(path);
        for (bool write : {false, true}) {
            const Handle<BinaryStream> s = f.OpenAsBinaryFile(write);
            const QString reason = QString(why).replace("%open", write ? "could not be opened for writing" : "could not be read");
            QCOMPARE(s.isNil(), !why.isEmpty());
            QCOMPARE(s.whyNil(), reason);
            if (!why.isEmpty())
                QCOMPARE(nilText([&] { s->Read(1); }), reason);
        }
        QCOMPARE(f.openDevice() != nullptr, why.isEmpty());
        QCOMPARE(QFileInfo::exists(path), bytes != "<missing>");
    }

    // A path is the file system's bytes: cleaned as bytes, shown as text with U+FFFD for
    // what is no UTF-8.
    void paths_data()
    {
        QTest::addColumn<QByteArray>("given");
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QString>("name");
        QTest::newRow("trailing slash") << QByteArray("/a/b/") << QByteArray("/a/b") << "b";
        QTest::newRow("dot steps, doubled slashes") << QByteArray("/a/./b/..//c.jpg") << QByteArray("/a/c.jpg") << "c.jpg";
        QTest::newRow("Shift-JIS, its trail bytes ^ and backslash")
            << QByteArray("/a/\x8e\xca\x90^\x95\\.jpg") << QByteArray("/a/\x8e\xca\x90^\x95\\.jpg") << u"\uFFFD\u0290^\uFFFD\\.jpg"_qs;
        QTest::newRow("stray byte, then ..") << QByteArray("/a/\xff/../\xff.jpg") << QByteArray("/a/\xff.jpg") << u"\uFFFD.jpg"_qs;
    }
    void paths()
    {
        QFETCH(QByteArray, given);
        QFETCH(QByteArray, path);
        QFETCH(QString, name);
        const FolderItem f(given);
        QCOMPARE(f.nativePath(), path);
        QCOMPARE(f.Name(), name);
        QCOMPARE(f, FolderItem(path));
    }

    void nilObjects()
    {
        QVERIFY_THROWS_EXCEPTION(NilObjectException, Handle<BinaryStream>()->Read(1));
        QVERIFY_THROWS_EXCEPTION(NilObjectException, FolderItem(dir_.filePath("never there")).ModificationDate());
        for (const FolderItem& f : {FolderItem(), FolderItem(QString()), FolderItem(QByteArray("a\0b", 3))}) {
            QVERIFY(f.isNil());
            QVERIFY_THROWS_EXCEPTION(NilObjectException, f.Name());
            QVERIFY_THROWS_EXCEPTION(NilObjectException, f.Exists());
            QVERIFY(!PinnedItem(f, PinnedItem::Dates).isOpen());
            QVERIFY_THROWS_EXCEPTION(NilObjectException, f.OpenAsBinaryFile(false));
        }
    }

    // A pinned item reaches the object that was opened: a link is followed, and its status
    // is the target's. Only a regular file opens for its contents, and opening never waits.
    // A write is whole or fails.
    void pinned_data()
    {
        QTest::addColumn<QString>("why");  // "" where it opens; the tag says what the item is
        QTest::newRow("file") << "";
        QTest::newRow("link to the file") << "";
        QTest::newRow("folder") << "it is a folder, not a file";
        QTest::newRow("fifo") << "it is not an ordinary file";
        QTest::newRow("missing") << "it is no longer there; it may have been moved or deleted";
    }
    void pinned()
    {
        QFETCH(QString, why);
        const QString tag = QTest::currentDataTag(), target = makeFile(pattern(300));
        QString path = dir_.filePath("pinned " + tag);
        if (tag == "file")
            path = target;
        else if (tag == "link to the file")
            QVERIFY(QFile::link(target, path));
        else if (tag == "folder")
            QVERIFY(QDir().mkpath(path));
        else if (tag == "fifo")
            QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        const FolderItem f(path);
        PinnedItem item(f, PinnedItem::Contents);
        QCOMPARE(PinnedItem::isLink(f), tag.startsWith("link"));
        QCOMPARE(item.isOpen(), why.isEmpty());
        QFile file(target);
        if (!why.isEmpty()) {
            QCOMPARE(item.why(), why);
            QVERIFY(!item.writeAt(0, kDate));
        } else {
            ItemStatus s;
            QVERIFY(item.status(s) && s.sameItem(FolderItem(target).Status()));
            QCOMPARE(item.readAt(290, 19), pattern(300).mid(290));  // short at the end
            QVERIFY(!item.writeAt(282, kDate));  // one byte beyond it
            QCOMPARE(item.why(), "the file ends before the place of the date");
            QVERIFY(item.writeAt(281, kDate) && item.close());
        }
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), why.isEmpty() ? pattern(300).replace(281, 19, kDate) : pattern(300));
    }

    // Dates set through a pinned item of the item's bytes, a Shift-JIS name as any other,
    // to the nanosecond; the access time stays, and this system sets no creation date.
    void dates_data()
    {
        QTest::addColumn<bool>("folder");
        QTest::addColumn<Date>("date");
        QTest::newRow("file, summer time") << false << Date(2019, 7, 31, 23, 59, 59);
        QTest::newRow("file, before 1970") << false << Date(1969, 12, 31, 22, 0, 1);
        QTest::newRow("folder") << true << Date(2010, 10, 10, 10, 10, 10);
    }
    void dates()
    {
        QFETCH(bool, folder);
        QFETCH(Date, date);
        qputenv("TZ", "Europe/Berlin");  // a zone with daylight saving
        tzset();
        const QString path = dir_.filePath(QTest::currentDataTag());
        QVERIFY(folder ? QDir().mkpath(path) : QFile(path).open(QIODevice::WriteOnly));
        const timespec atime[2] = {{1000000000, 0}, {0, UTIME_OMIT}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), atime, 0), 0);
        const FolderItem f(path);
        PinnedItem item(f, PinnedItem::Dates);
        QVERIFY(item.setModificationTime({date.toUnixTime(), 123456789}));
        QVERIFY(!PinnedItem::canSetCreationTime() && !item.setCreationTime({0, 0}));
        QCOMPARE(item.why(), "this system cannot set a file's creation date");
        QVERIFY(item.close());
        QCOMPARE(f.ModificationDate(), date);
        QCOMPARE(f.Status().modification.nanoseconds, 123456789);
        const QFileInfo info(path);
        QCOMPARE(info.lastModified().toString("yyyy-MM-dd HH:mm:ss"), date.SQLDateTime());
        QCOMPARE(info.lastRead().toSecsSinceEpoch(), atime[0].tv_sec);  // kept
        // Where the file system records the birth, that is the creation date; else the modification.
        const QString birth = info.birthTime().toString("yyyy-MM-dd HH:mm:ss");
        QCOMPARE(f.CreationDate().SQLDateTime(), birth.isEmpty() ? date.SQLDateTime() : birth);
    }
};

QTEST_MAIN(TestFiles)
#include "tst_files.moc"
