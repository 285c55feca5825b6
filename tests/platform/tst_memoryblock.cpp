#include "platform/Exceptions.h"
#include "platform/MemoryBlock.h"

#include <QtTest>

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
    QTest::addColumn<bool>("littleEndian");
    QTest::addColumn<char>("accessor");  // 'U' UInt16Value, 's' Short, 'l' Long
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("expected");  // -99: the access throws

    // The block holds 01 02 FF FE 80 00 00 01.
    QTest::newRow("UInt16 big-endian") << false << 'U' << 0LL << 0x0102LL;
    QTest::newRow("UInt16 little-endian, high bit") << true << 'U' << 2LL << 0xfeffLL;
    QTest::newRow("Short negative") << false << 's' << 2LL << -2LL;
    QTest::newRow("Long big-endian, odd offset") << false << 'l' << 1LL << 0x02fffe80LL;
    QTest::newRow("Long little-endian, negative") << true << 'l' << 0LL << qint64(qint32(0xfeff0201));
    QTest::newRow("Long at the last offset") << false << 'l' << 4LL << -2147483647LL;
    QTest::newRow("Long one byte past the end") << false << 'l' << 5LL << -99LL;
    QTest::newRow("Short at offset -1") << false << 's' << -1LL << -99LL;
    QTest::newRow("Long where offset + 4 wraps") << false << 'l' << std::numeric_limits<qint64>::max() - 1 << -99LL;
}

void TestMemoryBlock::numbers()
{
    QFETCH(bool, littleEndian);
    QFETCH(char, accessor);
    QFETCH(qint64, offset);
    QFETCH(qint64, expected);

    MemoryBlock mb(8);
    QVERIFY(!mb.LittleEndian());  // big-endian unless asked
    mb.setLittleEndian(littleEndian);
    mb.setStringValue(0, 8, QByteArray::fromHex("0102fffe80000001"));
    const auto read = [&]() -> qint64 {
        return accessor == 'U' ? mb.UInt16Value(offset) : accessor == 's' ? mb.Short(offset) : mb.Long(offset);
    };
    if (expected == -99)
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, read());
    else
        QCOMPARE(read(), expected);
}

void TestMemoryBlock::stringValue_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("expected");  // the whole block, which held 0xAA bytes; empty: throws

    QTest::newRow("short string leaves the rest zero") << 8LL << 2LL << 4LL << QByteArray("ab")
                                                       << QByteArray("\xaa\xaa" "ab\0\0\xaa\xaa", 8);
    QTest::newRow("long string is cut") << 8LL << 6LL << 2LL << QByteArray("xyz") << QByteArray(6, '\xaa') + "xy";
    QTest::newRow("largest directory block") << 786424LL << 786420LL << 4LL << QByteArray("end!")
                                             << QByteArray(786420, '\xaa') + "end!";
    QTest::newRow("empty range at the end") << 8LL << 8LL << 0LL << QByteArray("x") << QByteArray(8, '\xaa');
    QTest::newRow("range past the end") << 8LL << 6LL << 3LL << QByteArray("xyz") << QByteArray();
    QTest::newRow("negative length") << 8LL << 0LL << -1LL << QByteArray("x") << QByteArray();
    QTest::newRow("negative size gives an empty block") << -5LL << 0LL << 1LL << QByteArray("x") << QByteArray();
}

void TestMemoryBlock::stringValue()
{
    QFETCH(qint64, size);
    QFETCH(qint64, offset);
    QFETCH(qint64, length);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, expected);

    MemoryBlock mb(size);
    const qint64 n = mb.Size();
    QCOMPARE(n, qMax(size, 0LL));
    QCOMPARE(mb.StringValue(0, n), QByteArray(n, '\0'));  // zero-filled when made
    mb.setStringValue(0, n, QByteArray(n, '\xaa'));
    if (expected.isEmpty()) {
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, mb.setStringValue(offset, length, bytes));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, mb.StringValue(offset, length));
        QCOMPARE(mb.StringValue(0, n), QByteArray(n, '\xaa'));
    } else {
        mb.setStringValue(offset, length, bytes);
        QCOMPARE(mb.StringValue(0, n), expected);
    }
}

QTEST_MAIN(TestMemoryBlock)
#include "tst_memoryblock.moc"
