#include "platform/BinaryStream.h"

#include <QtTest>

#include <bit>
#include <sys/stat.h>

class TestStream : public QObject {
    Q_OBJECT
private slots:
    void reads_data();
    void reads();
    void numbers_data();
    void numbers();
    void writes_data();
    void writes();
    void refusedOpens_data();
    void refusedOpens();
    void nilHandle();

private:
    QString makeFile(const QByteArray& bytes)
    {
        QFile f(dir_.filePath(QString::number(++files_)));
        if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
            qFatal("cannot make a test file");
        return f.fileName();
    }
    QTemporaryDir dir_;
    int files_ = 0;
};

namespace {
constexpr quint64 kHuge = ~0ULL;
const QByteArray kDate("2001:02:03 04:05:06");

// Bytes that differ from their neighbours, so a read from the wrong place shows.
QByteArray pattern(int size)
{
    QByteArray b(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        b[i] = char((i * 7 + i / 251) % 251);
    return b;
}
}  // namespace

void TestStream::reads_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<quint64>("position");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<int>("expected");  // bytes that come back, from the position on

    QTest::newRow("header of a small file") << 300 << 0ULL << 256LL << 256;
    QTest::newRow("short read at the end") << 300 << 290ULL << 20LL << 10;
    QTest::newRow("empty past the end") << 300 << 5000ULL << 4LL << 0;
    QTest::newRow("negative position wrapped") << 300 << quint64(-4) << 8LL << 0;
    QTest::newRow("largest position") << 300 << kHuge << 8LL << 0;
    QTest::newRow("across a window boundary") << 20000 << 8190ULL << 12LL << 12;
    QTest::newRow("large read") << 40000 << 3ULL << 30000LL << 30000;
    QTest::newRow("large read cut at the end") << 40000 << 20000ULL << 1000000000000LL << 20000;
    QTest::newRow("negative count") << 300 << 10ULL << -1LL << 0;
}

void TestStream::reads()
{
    QFETCH(int, size);
    QFETCH(quint64, position);
    QFETCH(qint64, count);
    QFETCH(int, expected);

    const QByteArray bytes = pattern(size);
    auto bs = BinaryStream::open(makeFile(bytes), false);
    QCOMPARE(bs->Length(), quint64(size));
    bs->Read(16);  // something cached first, as the reader does
    bs->setPosition(position);
    QCOMPARE(bs->Read(count), expected ? bytes.mid(qsizetype(position), expected) : QByteArray());
    QCOMPARE(bs->Position(), position + quint64(expected));
}

void TestStream::numbers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint64>("position");
    QTest::addColumn<bool>("littleEndian");
    QTest::addColumn<bool>("isDouble");
    QTest::addColumn<quint64>("expected");  // the UInt16, or the Double's bits
    QTest::addColumn<quint64>("positionAfter");

    const QByteArray b = QByteArray::fromHex("12343ff8000000000000");  // 0x1234, then 1.5 big-endian
    const quint64 oneAndAHalf = std::bit_cast<quint64>(1.5);
    QTest::newRow("UInt16 big-endian") << b << 0ULL << false << false << 0x1234ULL << 2ULL;
    QTest::newRow("UInt16, one byte left, little-endian") << b.left(1) << 0ULL << true << false << 0x12ULL << 1ULL;
    QTest::newRow("UInt16 one byte left, high byte") << b.left(1) << 0ULL << false << false << 0x1200ULL << 1ULL;
    QTest::newRow("UInt16 at a huge position") << b << kHuge - 1 << false << false << 0ULL << kHuge - 1;
    QTest::newRow("Double big-endian") << b << 2ULL << false << true << oneAndAHalf << 10ULL;
    QTest::newRow("Double little-endian") << QByteArray::fromHex("000000000000f83f") << 0ULL << true << true
                                          << oneAndAHalf << 8ULL;
    QTest::newRow("Double with three bytes left") << b.left(4) << 1ULL << false << true << 0x343ff80000000000ULL << 4ULL;
    QTest::newRow("Double past the end") << b << 10ULL << true << true << 0ULL << 10ULL;
}

void TestStream::numbers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(quint64, position);
    QFETCH(bool, littleEndian);
    QFETCH(bool, isDouble);
    QFETCH(quint64, expected);
    QFETCH(quint64, positionAfter);

    auto bs = BinaryStream::open(makeFile(bytes), false);
    bs->setLittleEndian(littleEndian);
    bs->setPosition(position);
    QCOMPARE(isDouble ? std::bit_cast<quint64>(bs->ReadDouble()) : quint64(bs->ReadUInt16()), expected);
    QCOMPARE(bs->Position(), positionAfter);
}

void TestStream::writes_data()
{
    QTest::addColumn<quint64>("readAt");  // where 256 bytes are read first, as the reader does
    QTest::addColumn<quint64>("position");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<char>("stream");  // 'w' read-write, 'r' read-only, 'c' closed
    QTest::addColumn<bool>("written");

    QTest::newRow("inside the cached bytes") << 0ULL << 100ULL << kDate << 'w' << true;
    QTest::newRow("over the end of the first page") << 0ULL << 4090ULL << kDate << 'w' << true;
    QTest::newRow("over the end of the first 8 KiB") << 0ULL << 8185ULL << kDate << 'w' << true;
    QTest::newRow("over the start of the cached bytes") << 8200ULL << 8190ULL << kDate << 'w' << true;
    QTest::newRow("far from the cached bytes") << 0ULL << 15000ULL << kDate << 'w' << true;
    QTest::newRow("ending at the end of the file") << 0ULL << 19981ULL << kDate << 'w' << true;
    QTest::newRow("one byte beyond the end") << 19900ULL << 19982ULL << kDate << 'w' << false;
    QTest::newRow("at a huge position") << 0ULL << kHuge - 5 << kDate << 'w' << false;
    QTest::newRow("empty at the end") << 0ULL << 20000ULL << QByteArray() << 'w' << true;
    QTest::newRow("read-only stream") << 0ULL << 10ULL << kDate << 'r' << false;
    QTest::newRow("closed stream") << 0ULL << 10ULL << kDate << 'c' << false;
}

void TestStream::writes()
{
    QFETCH(quint64, readAt);
    QFETCH(quint64, position);
    QFETCH(QByteArray, bytes);
    QFETCH(char, stream);
    QFETCH(bool, written);

    const QByteArray before = pattern(20000);
    const QByteArray after = written ? QByteArray(before).replace(qsizetype(position), bytes.size(), bytes) : before;
    QFile file(makeFile(before));
    auto bs = BinaryStream::open(file.fileName(), stream != 'r');
    if (stream == 'c')
        bs->Close();
    bs->setPosition(readAt);
    bs->Read(256);
    bs->setPosition(position);
    QCOMPARE(bs->Write(bytes), written);
    QCOMPARE(bs->Position(), written ? position + quint64(bytes.size()) : position);
    // The same stream reads what the file holds, at both ends of the bytes written.
    for (quint64 at : {readAt, position - 3, position + quint64(bytes.size()) - 5}) {
        bs->setPosition(at);
        QCOMPARE(bs->Read(8), stream == 'c' || at > 20000 ? QByteArray() : after.mid(qsizetype(at), 8));
    }
    bs = nullptr;  // releases the file
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), after);
}

void TestStream::refusedOpens_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("write");

    for (bool write : {false, true})
        for (const char* kind : {"folder", "missing", "inside a file", "fifo"})
            QTest::addRow("%s, %s", kind, write ? "read-write" : "read-only") << QString(kind) << write;
}

void TestStream::refusedOpens()
{
    QFETCH(QString, kind);
    QFETCH(bool, write);

    QString path = dir_.filePath(QTest::currentDataTag());
    if (kind == "folder")
        QVERIFY(QDir().mkpath(path));
    else if (kind == "inside a file")
        path = makeFile("x") + "/x";
    else if (kind == "fifo")
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);  // an open would wait for a writer
    const Handle<BinaryStream> refused = BinaryStream::open(path, write);
    QVERIFY(refused.isNil());
    QCOMPARE(QFileInfo::exists(path), kind == "folder" || kind == "fifo");  // nothing created

    // The handle names the file and says why, and its use throws that text.
    const QString name = "“" + QFileInfo(path).fileName() + "”";
    const QString why = kind == "folder" ? name + " is a folder, not a file."
                        : kind == "fifo" ? name + " is not an ordinary file."
                                         : name + (write ? " could not be opened for writing" : " could not be read")
                                               + "; it may have been moved or deleted.";
    QCOMPARE(refused.whyNil(), why);
    try {
        refused->Read(1);
        QFAIL("a refused stream was used");
    } catch (const NilObjectException& e) {
        QCOMPARE(QString::fromUtf8(e.what()), why);
    }
}

void TestStream::nilHandle()
{
    Handle<BinaryStream> nil;
    QVERIFY(nil.isNil() && !nil);
    QVERIFY_THROWS_EXCEPTION(NilObjectException, nil->Read(1));
    QVERIFY_THROWS_EXCEPTION(NilObjectException, (*nil).Close());

    // Copies share one stream: a position set through one is seen through the other.
    auto a = BinaryStream::open(makeFile("abc"), false);
    Handle<BinaryStream> b = a;
    QVERIFY(a == b && !(a == nil) && !a.isNil());
    b->setPosition(2);
    QCOMPARE(a->Read(5), QByteArray("c"));
}

QTEST_MAIN(TestStream)
#include "tst_stream.moc"
