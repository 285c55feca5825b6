#include <QtTest>

#include <limits>

#include "platform/Convert.h"
#include "platform/Text.h"

namespace {
constexpr qint64 kMax = std::numeric_limits<qint64>::max();
constexpr qint64 kMin = std::numeric_limits<qint64>::min();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
}  // namespace

class TestText : public QObject {
    Q_OBJECT
private slots:
    // What Val reads from a typed or stored text, and how Str shows it again.
    void valAndStr_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("shown");
        auto row = [](const char* name, const QString& text, double value, const char* shown) {
            QTest::newRow(name) << text << value << QString::fromLatin1(shown);
        };
        row("number then letters", "12abc", 12, "12");
        row("no number", "abc", 0, "0");
        row("sign alone", "-", 0, "0");
        row("leading zeros", "007", 7, "7");
        row("exponent without digits", "1e", 1, "1");
        row("blanks, sign, fraction, exponent", " \t-4.5e-1x", -0.45, "-0.45");
        row("no digit before the point", "-.5", -0.5, "-0.5");
        row("negative zero", "-0", 0, "0");
        row("fifteen digits at most", "0.33333333333333333", 1.0 / 3, "0.333333333333333");
        row("shortest text", "0.30000000000000004", 0.1 + 0.2, "0.3");
        row("largest plain whole", "999999999999999", 999999999999999.0, "999999999999999");
        row("1e15", "1000000000000000", 1e15, "1e+15");
        row("small", "0.00000015", 1.5e-7, "1.5e-07");
        row("small fraction, large exponent", "0.000001e7", 10, "10");
        row("hex date offset", "&h0000002A", 42, "42");
        row("hex upper prefix", "&HfF", 255, "255");
        row("hex prefix alone", "&h", 0, "0");
        row("hex 32-bit pattern", "&hFFFFFFFF", 4294967295.0, "4294967295");
        row("hex 64-bit pattern is negative", "&hFFFFFFFFFFFFFFFF", -1, "-1");
        row("hex beyond 64 bits", "&h10000000000000001", 1, "1");
        row("binary", "&b1012", 5, "5");
        row("overflow", "-1e400", -kInf, "-INF");
        row("underflow", "1e-400", 0, "0");
        row("exponent of many digits", "1e99999999999999999999999", kInf, "INF");
        row("long digits", QString(400, u'9'), kInf, "INF");
    }
    void valAndStr()
    {
        QFETCH(QString, text);
        QFETCH(double, value);
        QFETCH(QString, shown);
        QCOMPARE(Val(text), value);
        QCOMPARE(Str(Val(text)), shown);
    }

    void integerTexts()
    {
        QCOMPARE(Str(kNaN), QString("NAN"));
        QCOMPARE(Str(kMin), QString("-9223372036854775808"));
        QCOMPARE(Hex(0), QString("0"));
        QCOMPARE(Hex(42), QString("2A"));
        QCOMPARE(Hex(-1), QString("FFFFFFFFFFFFFFFF"));
        for (qint64 n : {qint64(-2), qint64(0xFFFFFFFF), kMin})
            QCOMPARE(toInteger(Val("&h" + Hex(n))), n);
    }

    void fields_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("separator");
        QTest::addColumn<qint64>("count");
        QTest::addColumn<qint64>("index");
        QTest::addColumn<QString>("field");
        QTest::newRow("date piece") << "2021:05:06" << ":" << 3LL << 2LL << "05";
        QTest::newRow("index past the end") << "2021:05:06" << ":" << 3LL << 4LL << "";
        QTest::newRow("huge index") << "2021:05:06" << ":" << 3LL << kMax << "";
        QTest::newRow("index 0") << "a,b" << "," << 2LL << 0LL << "";
        QTest::newRow("marker") << "Exif取得不能" << ":" << 1LL << 1LL << "Exif取得不能";
        QTest::newRow("empty text") << "" << ":" << 1LL << 1LL << "";
        QTest::newRow("separator at the end") << "1 2 " << " " << 3LL << 3LL << "";
        QTest::newRow("separators do not overlap") << "aaa" << "aa" << 2LL << 2LL << "a";
        QTest::newRow("case counts") << "aXbxc" << "x" << 2LL << 1LL << "aXb";
        QTest::newRow("empty separator") << "a:b" << "" << 1LL << 1LL << "a:b";
    }
    void fields()
    {
        QFETCH(QString, text);
        QFETCH(QString, separator);
        QFETCH(qint64, count);
        QFETCH(qint64, index);
        QFETCH(QString, field);
        QCOMPARE(CountFields(text, separator), count);
        QCOMPARE(NthField(text, separator, index), field);
        const QStringList parts = Split(text, separator);
        QCOMPARE(parts.size(), count);
        for (qint64 i = 0; i < count; ++i)
            QCOMPARE(parts[i], NthField(text, separator, i + 1));
    }

    // Mid on text and MidB on bytes take positions alike.
    void mid_data()
    {
        QTest::addColumn<qint64>("start");
        QTest::addColumn<qint64>("length");
        QTest::addColumn<QString>("expected");
        QTest::newRow("one character") << 2LL << 1LL << "b";
        QTest::newRow("start 0 reads as 1") << 0LL << 2LL << "ab";
        QTest::newRow("negative start") << kMin << 2LL << "ab";
        QTest::newRow("to the end") << 5LL << -1LL << "ef";
        QTest::newRow("huge length") << 3LL << kMax << "cdef";
        QTest::newRow("just past the end") << 7LL << 1LL << "";
        QTest::newRow("huge start and length") << kMax << kMax << "";
    }
    void mid()
    {
        QFETCH(qint64, start);
        QFETCH(qint64, length);
        QFETCH(QString, expected);
        QCOMPARE(Mid("abcdef", start, length), expected);
        QCOMPARE(MidB("abcdef", start, length), expected.toLatin1());
    }

    void characters()
    {
        QCOMPARE(ReplaceAll("2021-05-06 07:08:09", "-", ":"), QString("2021:05:06 07:08:09"));
        QCOMPARE(ReplaceAll("aAa", "a", "b"), QString("bAb"));
        QCOMPARE(ReplaceAll("abc", "", "x"), QString("abc"));
        QCOMPARE(Right("abc", kMax), QString("abc"));
        QCOMPARE(Right("abc", -1), QString());
        const QString emoji = QString::fromUtf8("a😀b");  // a surrogate pair in the middle
        QCOMPARE(Len(emoji), 3);
        QCOMPARE(Mid(emoji, 2, 1), QString::fromUtf8("😀"));
        QCOMPARE(Right(emoji, 2), QString::fromUtf8("😀b"));
        QCOMPARE(Asc(Mid(emoji, 2)), 0x1F600u);
        QCOMPARE(Chr(0x1F600), QString::fromUtf8("😀"));
        QCOMPARE(Chr(0).size(), 1);
        QCOMPARE(Chr(0xD800), QString());
        // Two three-byte and four one-byte characters.
        QCOMPARE(Len(QString::fromUtf8("写真.jpg")), 6);
        QCOMPARE(LenB(QString::fromUtf8("写真.jpg")), 10);
        QVERIFY(sameText(QString::fromUtf8("Exif Ä"), QString::fromUtf8("EXIF ä")));
        QVERIFY(!sameText("abc", "abd"));
    }

    void bytes()
    {
        const QByteArray mm("MM\0*", 4);
        const QByteArray file = QByteArray("\xFF\xD8xxII*\0", 8) + mm;
        QCOMPARE(InStrB(file, mm), 9);
        QCOMPARE(InStrB(file, QByteArray("II*\0", 4)), 5);
        QCOMPARE(InStrB(file.left(11), mm), 0);  // three bytes of it do not count
        QCOMPARE(InStrB(file, QByteArray("mm\0*", 4)), 0);
        QCOMPARE(InStrB(file, QByteArray()), 0);
        QCOMPARE(LeftB(file, 2), QByteArray("\xFF\xD8"));
        QCOMPARE(LeftB(file, kMin), QByteArray());
        QCOMPARE(LeftB(file, kMax), file);
        QCOMPARE(AscB(file), 0xFFu);
        QCOMPARE(AscB(QByteArray()), 0u);
    }

    void conversions_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<qint64>("integer");
        QTest::addColumn<quint64>("position");
        const quint64 top = std::numeric_limits<quint64>::max();
        const quint64 half = quint64(1) << 63;
        QTest::newRow("fraction") << 1.9 << 1LL << quint64(1);
        QTest::newRow("negative fraction") << -1.9 << -1LL << top;
        QTest::newRow("small negative") << -0.5 << 0LL << quint64(0);
        QTest::newRow("not a number") << kNaN << 0LL << quint64(0);
        QTest::newRow("negative infinity") << -kInf << kMin << half;
        QTest::newRow("2^63") << 9223372036854775808.0 << kMax << half;
        QTest::newRow("largest below 2^63") << 9223372036854774784.0 << 9223372036854774784LL << quint64(9223372036854774784ULL);
        QTest::newRow("largest below 2^64") << 18446744073709549568.0 << kMax << quint64(18446744073709549568ULL);
        QTest::newRow("2^64") << 18446744073709551616.0 << kMax << top;
    }
    void conversions()
    {
        QFETCH(double, value);
        QFETCH(qint64, integer);
        QFETCH(quint64, position);
        QCOMPARE(toInteger(value), integer);
        QCOMPARE(toPosition(value), position);
    }
};

QTEST_MAIN(TestText)
#include "tst_text.moc"
