#include "platform/Exceptions.h"
#include "platform/MemoryBlock.h"

#include <QtTest>

#include <limits>

class TestMemoryBlock : public QObject {
    Q_OBJECT
private slots:
    void numbers_data();
    void numbers();
    void bounds_data();
    void bounds();
    void stringValue_data();
    void stringValue();
};

namespace {
// Reads one number with the accessor named, as a signed value for comparison.
qint64 readAs(const MemoryBlock& mb, const QByteArray& accessor, qint64 offset)
{
    if (accessor == "UInt16Value") return mb.UInt16Value(offset);
    if (accessor == "UShort") return mb.UShort(offset);
    if (accessor == "Short") return mb.Short(offset);
    if (accessor == "Long") return mb.Long(offset);
    if (accessor == "StringValue4") return mb.StringValue(offset, 4).size();
    qFatal("unknown accessor");
}
}  // namespace

void TestMemoryBlock::numbers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("littleEndian");
    QTest::addColumn<QByteArray>("accessor");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("expected");

    const QByteArray b = QByteArray::fromHex("0102fffe80000001");
    QTest::newRow("UInt16 big-endian") << b << false << QByteArray("UInt16Value") << 0LL << 0x0102LL;
    QTest::newRow("UInt16 little-endian") << b << true << QByteArray("UInt16Value") << 0LL << 0x0201LL;
    QTest::newRow("UShort keeps the high bit") << b << false << QByteArray("UShort") << 2LL << 0xfffeLL;
    QTest::newRow("Short negative big-endian") << b << false << QByteArray("Short") << 2LL << -2LL;
    QTest::newRow("Short negative little-endian") << b << true << QByteArray("Short") << 2LL << -257LL;
    QTest::newRow("Long big-endian") << b << false << QByteArray("Long") << 0LL << 0x0102fffeLL;
    QTest::newRow("Long little-endian") << b << true << QByteArray("Long") << 0LL << qint64(qint32(0xfeff0201));
    QTest::newRow("Long minimum") << b << false << QByteArray("Long") << 4LL << qint64(std::numeric_limits<qint32>::min()) + 1;
    QTest::newRow("Long at the last offset") << b << true << QByteArray("Long") << 4LL << 0x01000080LL;
    QTest::newRow("Long at an odd offset") << b << false << QByteArray("Long") << 1LL << qint64(qint32(0x02fffe80));
}

void TestMemoryBlock::numbers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, littleEndian);
    QFETCH(QByteArray, accessor);
    QFETCH(qint64, offset);
    QFETCH(qint64, expected);

    MemoryBlock mb(bytes.size());
    QVERIFY(!mb.LittleEndian());  // big-endian unless asked
    mb.setLittleEndian(littleEndian);
    mb.setStringValue(0, bytes.size(), bytes);
    QCOMPARE(readAs(mb, accessor, offset), expected);
}

void TestMemoryBlock::bounds_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QByteArray>("accessor");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<bool>("throws");

    constexpr qint64 max = std::numeric_limits<qint64>::max();
    QTest::newRow("Long wholly inside") << 8LL << QByteArray("Long") << 4LL << false;
    QTest::newRow("Long one byte past the end") << 8LL << QByteArray("Long") << 5LL << true;
    QTest::newRow("Short at the end") << 8LL << QByteArray("Short") << 8LL << true;
    QTest::newRow("UInt16 at offset -1") << 8LL << QByteArray("UInt16Value") << -1LL << true;
    QTest::newRow("Long at an offset that wraps a sum") << 8LL << QByteArray("Long") << max - 1 << true;
    QTest::newRow("Long in a block of 3") << 3LL << QByteArray("Long") << 0LL << true;
    QTest::newRow("anything in a negative-size block") << -5LL << QByteArray("UShort") << 0LL << true;
    QTest::newRow("StringValue wholly inside") << 4LL << QByteArray("StringValue4") << 0LL << false;
    QTest::newRow("StringValue wrapping") << 4LL << QByteArray("StringValue4") << max << true;
}

void TestMemoryBlock::bounds()
{
    QFETCH(qint64, size);
    QFETCH(QByteArray, accessor);
    QFETCH(qint64, offset);
    QFETCH(bool, throws);

    MemoryBlock mb(size);
    QCOMPARE(mb.Size(), qMax<qint64>(size, 0));
    if (throws)
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, readAs(mb, accessor, offset));
    else
        readAs(mb, accessor, offset);
}

void TestMemoryBlock::stringValue_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");  // the whole 8-byte block, which started as all 0xAA; empty: throws

    QTest::newRow("exact") << 2LL << 3LL << QByteArray("abc") << QByteArray("\xaa\xaa" "abc\xaa\xaa\xaa");
    QTest::newRow("short string leaves the rest zero") << 2LL << 4LL << QByteArray("ab")
                                                       << QByteArray("\xaa\xaa" "ab\0\0\xaa\xaa", 8);
    QTest::newRow("empty string zeroes the range") << 0LL << 8LL << QByteArray() << QByteArray(8, '\0');
    QTest::newRow("long string is cut") << 6LL << 2LL << QByteArray("xyz") << QByteArray("\xaa\xaa\xaa\xaa\xaa\xaa" "xy");
    QTest::newRow("empty range at the end") << 8LL << 0LL << QByteArray("x") << QByteArray(8, '\xaa');
    QTest::newRow("range past the end changes nothing") << 6LL << 3LL << QByteArray("xyz") << QByteArray();
    QTest::newRow("negative length") << 0LL << -1LL << QByteArray("x") << QByteArray();
}

void TestMemoryBlock::stringValue()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, length);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);

    MemoryBlock mb(8);
    QCOMPARE(mb.StringValue(0, 8), QByteArray(8, '\0'));  // zero-filled when made
    mb.setStringValue(0, 8, QByteArray(8, '\xaa'));
    if (expected.isEmpty()) {
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, mb.setStringValue(offset, length, bytes));
        QCOMPARE(mb.StringValue(0, 8), QByteArray(8, '\xaa'));
    } else {
        mb.setStringValue(offset, length, bytes);
        QCOMPARE(mb.StringValue(0, 8), expected);
    }
}

QTEST_MAIN(TestMemoryBlock)
#include "tst_memoryblock.moc"
