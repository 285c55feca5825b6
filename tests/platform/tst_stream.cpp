#include "platform/BinaryStream.h"

#include <QtTest>

#include <bit>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

class TestStream : public QObject {
    Q_OBJECT
private slots:
    void reads_data();
    void reads();
    void numbers_data();
    void numbers();
    void writes_data();
    void writes();
    void writeThenRead_data();
    void writeThenRead();
    void refusedOpens_data();
    void refusedOpens();
    void nilHandle();

private:
    QString makeFile(const QByteArray& bytes);
    QTemporaryDir dir_;
    int files_ = 0;
};

namespace {
constexpr quint64 kHuge = std::numeric_limits<quint64>::max();

// Bytes that differ from their neighbours, so a read from the wrong place shows.
QByteArray pattern(int size)
{
    QByteArray b(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        b[i] = char((i * 7 + i / 251) % 251);
    return b;
}

QByteArray contents(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
}
}  // namespace

QString TestStream::makeFile(const QByteArray& bytes)
{
    const QString path = dir_.filePath(QString::number(++files_));
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        qFatal("cannot make a test file");
    return path;
}

void TestStream::reads_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<quint64>("position");
    QTest::addColumn<qint64>("count");
    QTest::addColumn<qint64>("expectedStart");  // where the expected bytes begin in the file
    QTest::addColumn<qint64>("expectedLength");

    QTest::newRow("header of a small file") << 300 << 0ULL << 256LL << 0LL << 256LL;
    QTest::newRow("short read at the end") << 300 << 290ULL << 20LL << 290LL << 10LL;
    QTest::newRow("file shorter than the read") << 100 << 0ULL << 256LL << 0LL << 100LL;
    QTest::newRow("empty at the end") << 300 << 300ULL << 4LL << 300LL << 0LL;
    QTest::newRow("empty past the end") << 300 << 5000ULL << 4LL << 5000LL << 0LL;
    QTest::newRow("negative position wrapped") << 300 << quint64(-4) << 8LL << 0LL << 0LL;
    QTest::newRow("largest position") << 300 << kHuge << 8LL << 0LL << 0LL;
    QTest::newRow("across a window boundary") << 20000 << 8190ULL << 12LL << 8190LL << 12LL;
    QTest::newRow("far into the file") << 40000 << 30001ULL << 100LL << 30001LL << 100LL;
    QTest::newRow("large read") << 40000 << 3ULL << 30000LL << 3LL << 30000LL;
    QTest::newRow("large read cut at the end") << 40000 << 20000ULL << 1000000000000LL << 20000LL << 20000LL;
    QTest::newRow("count zero") << 300 << 10ULL << 0LL << 10LL << 0LL;
    QTest::newRow("negative count") << 300 << 10ULL << -1LL << 10LL << 0LL;
}

void TestStream::reads()
{
    QFETCH(int, size);
    QFETCH(quint64, position);
    QFETCH(qint64, count);
    QFETCH(qint64, expectedStart);
    QFETCH(qint64, expectedLength);

    const QByteArray bytes = pattern(size);
    auto bs = BinaryStream::open(makeFile(bytes), false);
    QVERIFY(!bs.isNil());
    QCOMPARE(bs->Length(), quint64(size));
    bs->Read(16);  // something cached first, as the reader does
    bs->setPosition(position);
    QCOMPARE(bs->Read(count), bytes.mid(expectedStart, expectedLength));
    QCOMPARE(bs->Position(), position + quint64(expectedLength));
}

void TestStream::numbers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<quint64>("position");
    QTest::addColumn<bool>("littleEndian");
    QTest::addColumn<bool>("isDouble");
    QTest::addColumn<quint64>("expectedBits");  // the UInt16, or the Double's bits
    QTest::addColumn<quint64>("positionAfter");

    const QByteArray d = QByteArray::fromHex("3ff8000000000000");  // 1.5 big-endian
    const QByteArray bytes = QByteArray::fromHex("1234") + d;
    QTest::newRow("UInt16 big-endian") << bytes << 0ULL << false << false << 0x1234ULL << 2ULL;
    QTest::newRow("UInt16 little-endian") << bytes << 0ULL << true << false << 0x3412ULL << 2ULL;
    QTest::newRow("UInt16 with one byte left, big-endian") << QByteArray("\x12", 1) << 0ULL << false << false << 0x1200ULL << 1ULL;
    QTest::newRow("UInt16 with one byte left, little-endian") << QByteArray("\x12", 1) << 0ULL << true << false << 0x12ULL << 1ULL;
    QTest::newRow("UInt16 past the end") << bytes << 50ULL << false << false << 0ULL << 50ULL;
    QTest::newRow("UInt16 at a huge position") << bytes << kHuge - 1 << false << false << 0ULL << kHuge - 1;
    QTest::newRow("Double big-endian") << bytes << 2ULL << false << true << std::bit_cast<quint64>(1.5) << 10ULL;
    QTest::newRow("Double little-endian") << QByteArray::fromHex("000000000000f83f") << 0ULL << true << true
                                          << std::bit_cast<quint64>(1.5) << 8ULL;
    QTest::newRow("Double with three bytes left") << QByteArray::fromHex("12343ff8") << 1ULL << false << true
                                                  << 0x343ff80000000000ULL << 4ULL;
    QTest::newRow("Double cut short") << QByteArray::fromHex("4009") << 0ULL << false << true << 0x4009000000000000ULL << 2ULL;
    QTest::newRow("Double past the end") << bytes << 10ULL << true << true << 0ULL << 10ULL;
}

void TestStream::numbers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(quint64, position);
    QFETCH(bool, littleEndian);
    QFETCH(bool, isDouble);
    QFETCH(quint64, expectedBits);
    QFETCH(quint64, positionAfter);

    auto bs = BinaryStream::open(makeFile(bytes), false);
    bs->setLittleEndian(littleEndian);
    bs->setPosition(position);
    if (isDouble)
        QCOMPARE(std::bit_cast<quint64>(bs->ReadDouble()), expectedBits);
    else
        QCOMPARE(quint64(bs->ReadUInt16()), expectedBits);
    QCOMPARE(bs->Position(), positionAfter);
}

void TestStream::writes_data()
{
    QTest::addColumn<quint64>("position");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("write");
    QTest::addColumn<bool>("closeFirst");
    QTest::addColumn<bool>("written");

    const QByteArray date("2001:02:03 04:05:06");
    QTest::newRow("inside") << 10ULL << date << true << false << true;
    QTest::newRow("ending at the end") << 81ULL << date << true << false << true;
    QTest::newRow("one byte beyond the end") << 82ULL << date << true << false << false;
    QTest::newRow("at a huge position") << kHuge - 5 << date << true << false << false;
    QTest::newRow("empty at the end") << 100ULL << QByteArray() << true << false << true;
    QTest::newRow("read-only stream") << 10ULL << date << false << false << false;
    QTest::newRow("closed stream") << 10ULL << date << true << true << false;
}

void TestStream::writes()
{
    QFETCH(quint64, position);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, write);
    QFETCH(bool, closeFirst);
    QFETCH(bool, written);

    const QByteArray before = pattern(100);
    const QString path = makeFile(before);
    auto bs = BinaryStream::open(path, write);
    QVERIFY(!bs.isNil());
    if (closeFirst)
        bs->Close();
    bs->setPosition(position);
    QCOMPARE(bs->Write(bytes), written);
    QCOMPARE(bs->Position(), written ? position + quint64(bytes.size()) : position);
    bs = nullptr;  // releases the file
    QCOMPARE(contents(path), written ? QByteArray(before).replace(qsizetype(position), bytes.size(), bytes) : before);
}

void TestStream::writeThenRead_data()
{
    QTest::addColumn<quint64>("readAt");
    QTest::addColumn<quint64>("writeAt");

    QTest::newRow("inside the cached bytes") << 0ULL << 100ULL;
    QTest::newRow("over the end of the cached bytes") << 0ULL << 8185ULL;
    QTest::newRow("before the cached bytes") << 9000ULL << 8190ULL;
    QTest::newRow("far from the cached bytes") << 0ULL << 15000ULL;
}

void TestStream::writeThenRead()
{
    QFETCH(quint64, readAt);
    QFETCH(quint64, writeAt);

    const QByteArray date("2001:02:03 04:05:06");
    QByteArray expected = pattern(20000);
    auto bs = BinaryStream::open(makeFile(expected), true);
    bs->setPosition(readAt);
    QCOMPARE(bs->Read(256), expected.mid(qsizetype(readAt), 256));
    bs->setPosition(writeAt);
    QVERIFY(bs->Write(date));
    expected.replace(qsizetype(writeAt), date.size(), date);
    for (quint64 at : {readAt, writeAt - 3}) {
        bs->setPosition(at);
        QCOMPARE(bs->Read(256), expected.mid(qsizetype(at), 256));
    }
}

void TestStream::refusedOpens_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("write");

    for (bool write : {false, true}) {
        const char* mode = write ? "read-write" : "read-only";
        for (const char* kind : {"folder", "missing", "inside a file", "fifo", "empty path", "no permission"})
            QTest::addRow("%s, %s", kind, mode) << QString::fromLatin1(kind) << write;
    }
}

void TestStream::refusedOpens()
{
    QFETCH(QString, kind);
    QFETCH(bool, write);

    QString path = dir_.filePath(QTest::currentDataTag());
    if (kind == "folder")
        QVERIFY(QDir(dir_.path()).mkpath(path));
    else if (kind == "inside a file")
        path = makeFile("x") + "/x";
    else if (kind == "fifo")
        QCOMPARE(::mkfifo(path.toLocal8Bit().constData(), 0600), 0);  // an open would wait for a writer
    else if (kind == "empty path")
        path.clear();
    else if (kind == "no permission") {
        if (::geteuid() == 0)
            QSKIP("permission bits do not stop root");
        path = makeFile("x");
        QFile::setPermissions(path, {});
    }
    QVERIFY(BinaryStream::open(path, write).isNil());
    if (kind == "missing")
        QVERIFY(!QFile::exists(path));  // never created
}

void TestStream::nilHandle()
{
    Handle<BinaryStream> nil;
    QVERIFY(nil.isNil());
    QVERIFY(!nil);
    QVERIFY_THROWS_EXCEPTION(NilObjectException, nil->Read(1));
    QVERIFY_THROWS_EXCEPTION(NilObjectException, (*nil).Close());
    QVERIFY_THROWS_EXCEPTION(NilObjectException, nil.get());

    // Copies share one stream: a position set through one is seen through the other.
    auto a = BinaryStream::open(makeFile("abc"), false);
    Handle<BinaryStream> b = a;
    QVERIFY(a == b && !(a == nil));
    b->setPosition(2);
    QCOMPARE(a->Read(5), QByteArray("c"));
}

QTEST_MAIN(TestStream)
#include "tst_stream.moc"
