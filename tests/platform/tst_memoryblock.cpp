#include "platform/Exceptions.h"
#include "platform/MemoryBlock.h"

#include <QtTest>

struct NumberCase {
    bool littleEndian;
    char accessor;  // 'U' UInt16Value, 'u' UShort, 's' Short, 'l' Long
    qint64 offset;
    qint64 expected;  // ignored when the access throws
    bool throws = false;
};
struct StringCase {
    qint64 size, offset, length;
    QByteArray bytes;
    QByteArray expected;  // the whole block, which held 0xAA bytes; empty: the set throws
};
Q_DECLARE_METATYPE(NumberCase)
Q_DECLARE_METATYPE(StringCase)

class TestMemoryBlock : public QObject {
    Q_OBJECT
private slots:
    void numbers_data();
    void numbers();
    void stringValue_data();
    void stringValue();
};

void TestMemoryBlock::numbers_data()
{
    QTest::addColumn<NumberCase>("c");
    const qint64 max = std::numeric_limits<qint64>::max();
    // The block holds 01 02 FF FE 80 00 00 01.
    QTest::newRow("UInt16 big-endian") << NumberCase{false, 'U', 0, 0x0102};
    QTest::newRow("UInt16 little-endian") << NumberCase{true, 'U', 0, 0x0201};
    QTest::newRow("UShort keeps the high bit") << NumberCase{false, 'u', 2, 0xfffe};
    QTest::newRow("Short negative big-endian") << NumberCase{false, 's', 2, -2};
    QTest::newRow("Short negative little-endian") << NumberCase{true, 's', 2, -257};
    QTest::newRow("Long big-endian, odd offset") << NumberCase{false, 'l', 1, 0x02fffe80};
    QTest::newRow("Long little-endian") << NumberCase{true, 'l', 0, qint32(0xfeff0201)};
    QTest::newRow("Long near the minimum, last offset") << NumberCase{false, 'l', 4, -2147483647};
    QTest::newRow("Long one byte past the end") << NumberCase{false, 'l', 5, 0, true};
    QTest::newRow("Short at the end") << NumberCase{false, 's', 8, 0, true};
    QTest::newRow("UInt16 at offset -1") << NumberCase{false, 'U', -1, 0, true};
    QTest::newRow("Long where offset + 4 wraps") << NumberCase{false, 'l', max - 1, 0, true};
}

void TestMemoryBlock::numbers()
{
    QFETCH(NumberCase, c);
    MemoryBlock mb(8);
    QVERIFY(!mb.LittleEndian());  // big-endian unless asked
    mb.setLittleEndian(c.littleEndian);
    mb.setStringValue(0, 8, QByteArray::fromHex("0102fffe80000001"));
    const auto read = [&]() -> qint64 {
        switch (c.accessor) {
        case 'U': return mb.UInt16Value(c.offset);
        case 'u': return mb.UShort(c.offset);
        case 's': return mb.Short(c.offset);
        default: return mb.Long(c.offset);
        }
    };
    if (c.throws)
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, read());
    else
        QCOMPARE(read(), c.expected);
}

void TestMemoryBlock::stringValue_data()
{
    QTest::addColumn<StringCase>("c");
    const QByteArray aa(6, '\xaa');
    QTest::newRow("exact") << StringCase{8, 2, 3, "abc", "\xaa\xaa" "abc\xaa\xaa\xaa"};
    QTest::newRow("short string leaves the rest zero")
        << StringCase{8, 2, 4, "ab", QByteArray("\xaa\xaa" "ab\0\0\xaa\xaa", 8)};
    QTest::newRow("long string is cut") << StringCase{8, 6, 2, "xyz", aa + "xy"};
    QTest::newRow("small block") << StringCase{4, 0, 4, "II*", QByteArray("II*\0", 4)};
    QTest::newRow("largest directory block") << StringCase{786424, 786420, 4, "end!", QByteArray(786420, '\xaa') + "end!"};
    QTest::newRow("empty range at the end") << StringCase{8, 8, 0, "x", aa + "\xaa\xaa"};
    QTest::newRow("range past the end") << StringCase{8, 6, 3, "xyz", {}};
    QTest::newRow("negative length") << StringCase{8, 0, -1, "x", {}};
    QTest::newRow("negative size gives an empty block") << StringCase{-5, 0, 1, "x", {}};
}

void TestMemoryBlock::stringValue()
{
    QFETCH(StringCase, c);
    MemoryBlock mb(c.size);
    const qint64 n = mb.Size();
    QCOMPARE(n, qMax(c.size, 0LL));
    QCOMPARE(mb.StringValue(0, n), QByteArray(n, '\0'));  // zero-filled when made
    mb.setStringValue(0, n, QByteArray(n, '\xaa'));
    if (c.expected.isEmpty()) {
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, mb.setStringValue(c.offset, c.length, c.bytes));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, mb.StringValue(c.offset, c.length));
        QCOMPARE(mb.StringValue(0, n), QByteArray(n, '\xaa'));
    } else {
        mb.setStringValue(c.offset, c.length, c.bytes);
        QCOMPARE(mb.StringValue(0, n), c.expected);
    }
}

QTEST_MAIN(TestMemoryBlock)
#include "tst_memoryblock.moc"
