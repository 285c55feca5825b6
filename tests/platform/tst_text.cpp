#include <QtTest>

#include <cmath>
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
    void val_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("expected");
        QTest::newRow("number then letters") << "12abc" << 12.0;
        QTest::newRow("no number") << "abc" << 0.0;
        QTest::newRow("empty") << "" << 0.0;
        QTest::newRow("sign alone") << "-" << 0.0;
        QTest::newRow("point alone") << "." << 0.0;
        QTest::newRow("exponent without digits") << "1e" << 1.0;
        QTest::newRow("exponent sign without digits") << "1e+x" << 1.0;
        QTest::newRow("blanks, sign, fraction, exponent") << " \t-4.5e-1x" << -0.45;
        QTest::newRow("leading point") << "-.5" << -0.5;
        QTest::newRow("trailing point") << "5." << 5.0;
        QTest::newRow("plus sign") << "+7" << 7.0;
        QTest::newRow("leading zeros") << "007" << 7.0;
        QTest::newRow("second point ends it") << "1.2.3" << 1.2;
        QTest::newRow("blank inside ends it") << "1 2" << 1.0;
        QTest::newRow("blank after sign") << "- 2" << 0.0;
        QTest::newRow("full-width digit") << QString::fromUtf8("２") << 0.0;
        QTest::newRow("date field") << "2021" << 2021.0;
        QTest::newRow("hex date offset") << "&h0000002A" << 42.0;
        QTest::newRow("hex upper prefix, mixed digits") << "&HfF" << 255.0;
        QTest::newRow("hex prefix alone") << "&h" << 0.0;
        QTest::newRow("hex bad digit") << "&hG1" << 0.0;
        QTest::newRow("hex 32-bit pattern") << "&hFFFFFFFF" << 4294967295.0;
        QTest::newRow("hex 64-bit pattern is negative") << "&hFFFFFFFFFFFFFFFF" << -1.0;
        QTest::newRow("hex beyond 64 bits") << "&h10000000000000001" << 1.0;
        QTest::newRow("octal") << "&o17" << 15.0;
        QTest::newRow("binary") << "&b1012" << 5.0;
        QTest::newRow("unknown prefix") << "&x1" << 0.0;
        QTest::newRow("overflow") << "1e400" << kInf;
        QTest::newRow("negative overflow") << "-1e400" << -kInf;
        QTest::newRow("underflow") << "1e-400" << 0.0;
        QTest::newRow("exponent of many digits") << "1e99999999999999999999999" << kInf;
        QTest::newRow("zero with a huge exponent") << "0e99999" << 0.0;
        QTest::newRow("long digits") << QString(400, u'9') << kInf;
        QTest::newRow("tiny fraction") << "0." + QString(400, u'0') + "1" << 0.0;
        QTest::newRow("small fraction, large exponent") << "0.000001e7" << 10.0;
    }
    void val()
    {
        QFETCH(QString, text);
        QFETCH(double, expected);
        QCOMPARE(Val(text), expected);
    }

    void str_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("expected");
        QTest::newRow("tenth") << 0.1 << "0.1";
        QTest::newRow("sum that is not 0.3") << 0.1 + 0.2 << "0.3";
        QTest::newRow("third") << 1.0 / 3 << "0.333333333333333";
        QTest::newRow("negative zero") << -0.0 << "0";
        QTest::newRow("whole") << 12.0 << "12";
        QTest::newRow("largest plain whole") << 999999999999999.0 << "999999999999999";
        QTest::newRow("1e15") << 1e15 << "1e+15";
        QTest::newRow("negative fraction") << -2.5 << "-2.5";
        QTest::newRow("small") << 1.5e-7 << "1.5e-07";
        QTest::newRow("infinity") << kInf << "INF";
        QTest::newRow("negative infinity") << -kInf << "-INF";
        QTest::newRow("not a number") << kNaN << "NAN";
    }
    void str()
    {
        QFETCH(double, value);
        QFETCH(QString, expected);
        QCOMPARE(Str(value), expected);
    }

    void normalisedAddValue_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("leading zeros go") << "007" << "7";
        QTest::newRow("letters are 0") << "abc" << "0";
        QTest::newRow("empty is 0") << "" << "0";
        QTest::newRow("number before text") << "12abc" << "12";
        QTest::newRow("fraction stays") << "1.50" << "1.5";
        QTest::newRow("negative zero") << "-0" << "0";
        QTest::newRow("negative") << "-3" << "-3";
    }
    void normalisedAddValue()
    {
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        QCOMPARE(Str(Val(typed)), expected);
    }

    void integerTexts()
    {
        QCOMPARE(Str(kMin), QString("-9223372036854775808"));
        QCOMPARE(Hex(0), QString("0"));
        QCOMPARE(Hex(42), QString("2A"));
        QCOMPARE(Hex(-1), QString("FFFFFFFFFFFFFFFF"));
        QCOMPARE(Hex(kMin), QString("8000000000000000"));
        for (qint64 n : {qint64(0), qint64(1), qint64(-2), qint64(0xFFFFFFFF), kMin})
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
        QTest::newRow("index 0") << "2021:05:06" << ":" << 3LL << 0LL << "";
        QTest::newRow("index past the end") << "2021:05:06" << ":" << 3LL << 4LL << "";
        QTest::newRow("huge index") << "2021:05:06" << ":" << 3LL << kMax << "";
        QTest::newRow("negative index") << "a,b" << "," << 2LL << kMin << "";
        QTest::newRow("orientation table last") << "0,0,2,2,3,1,1,3" << "," << 8LL << 8LL << "3";
        QTest::newRow("marker") << QString::fromUtf8("Exif取得不能") << ":" << 1LL << 1LL << QString::fromUtf8("Exif取得不能");
        QTest::newRow("empty text") << "" << ":" << 1LL << 1LL << "";
        QTest::newRow("empty middle field") << "a::b" << ":" << 3LL << 2LL << "";
        QTest::newRow("whole separator") << "a::b" << "::" << 2LL << 2LL << "b";
        QTest::newRow("separators do not overlap") << "aaa" << "aa" << 2LL << 2LL << "a";
        QTest::newRow("separator at the end") << "1 2 " << " " << 3LL << 3LL << "";
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

    void characters()
    {
        QCOMPARE(ReplaceAll("2021-05-06 07:08:09", "-", ":"), QString("2021:05:06 07:08:09"));
        QCOMPARE(ReplaceAll("aAa", "a", "b"), QString("bAb"));
        QCOMPARE(ReplaceAll("abc", "", "x"), QString("abc"));
        const QString s = "abcdef";
        QCOMPARE(Mid(s, 2, 3), QString("bcd"));
        QCOMPARE(Mid(s, 0, 2), QString("ab"));
        QCOMPARE(Mid(s, kMin, 2), QString("ab"));
        QCOMPARE(Mid(s, 5), QString("ef"));
        QCOMPARE(Mid(s, 7, 1), QString());
        QCOMPARE(Mid(s, 2, kMax), QString("bcdef"));
        QCOMPARE(Mid(s, kMax, kMax), QString());
        QCOMPARE(Right(s, 2), QString("ef"));
        QCOMPARE(Right(s, kMax), s);
        QCOMPARE(Right(s, -1), QString());
        const QString emoji = QString::fromUtf8("a😀b");
        QCOMPARE(Len(emoji), 3);
        QCOMPARE(LenB(emoji), 6);
        QCOMPARE(Mid(emoji, 2, 1), QString::fromUtf8("😀"));
        QCOMPARE(Right(emoji, 2), QString::fromUtf8("😀b"));
        QCOMPARE(Asc(Mid(emoji, 2)), 0x1F600u);
        QCOMPARE(Chr(0x1F600), QString::fromUtf8("😀"));
        QCOMPARE(Chr(0).size(), 1);
        QCOMPARE(Chr(0xD800), QString());
        QCOMPARE(Chr(0x110000), QString());
        QCOMPARE(Asc(""), 0u);
        // A name of two three-byte and four one-byte characters.
        const QString name = QString::fromUtf8("写真.jpg");
        QCOMPARE(Len(name), 6);
        QCOMPARE(LenB(name), 10);
        QVERIFY(sameText("Exif", "EXIF"));
        QVERIFY(sameText(QString::fromUtf8("Ä"), QString::fromUtf8("ä")));
        QVERIFY(!sameText("abc", "abd"));
    }

    void bytes_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<qint64>("start");
        QTest::addColumn<qint64>("length");
        QTest::addColumn<QByteArray>("mid");
        QTest::newRow("one byte") << QByteArray("abcdef") << 2LL << 1LL << QByteArray("b");
        QTest::newRow("start 0 reads as 1") << QByteArray("abcdef") << 0LL << 1LL << QByteArray("a");
        QTest::newRow("negative start") << QByteArray("abcdef") << kMin << 2LL << QByteArray("ab");
        QTest::newRow("to the end") << QByteArray("abcdef") << 5LL << -1LL << QByteArray("ef");
        QTest::newRow("huge length") << QByteArray("abcdef") << 3LL << kMax << QByteArray("cdef");
        QTest::newRow("huge start") << QByteArray("abcdef") << kMax << kMax << QByteArray();
        QTest::newRow("just past the end") << QByteArray("abcdef") << 7LL << 1LL << QByteArray();
        QTest::newRow("zero length") << QByteArray("abcdef") << 1LL << 0LL << QByteArray();
        QTest::newRow("empty") << QByteArray() << 1LL << 1LL << QByteArray();
    }
    void bytes()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(qint64, start);
        QFETCH(qint64, length);
        QFETCH(QByteArray, mid);
        QCOMPARE(MidB(bytes, start, length), mid);
    }

    void byteSearch()
    {
        const QByteArray mm("MM\0*", 4);
        const QByteArray file = QByteArray("\xFF\xD8xxII*\0", 8) + mm;
        QCOMPARE(InStrB(file, mm), 9);
        QCOMPARE(InStrB(file, QByteArray("II*\0", 4)), 5);
        QCOMPARE(InStrB(file.left(11), mm), 0);  // three bytes of it do not count
        QCOMPARE(InStrB(file, QByteArray("mm\0*", 4)), 0);
        QCOMPARE(InStrB(file, QByteArray()), 0);
        QCOMPARE(InStrB(QByteArray(), mm), 0);
        QCOMPARE(LeftB(file, 2), QByteArray("\xFF\xD8"));
        QCOMPARE(LeftB(file, 0), QByteArray());
        QCOMPARE(LeftB(file, kMin), QByteArray());
        QCOMPARE(LeftB(file, kMax), file);
        QCOMPARE(LenB(file), 12);
        QCOMPARE(AscB(file), 0xFFu);
        QCOMPARE(AscB(QByteArray()), 0u);
    }

    void conversions_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<qint64>("integer");
        QTest::addColumn<quint64>("position");
        const quint64 top = std::numeric_limits<quint64>::max();
        QTest::newRow("fraction") << 1.9 << 1LL << quint64(1);
        QTest::newRow("negative fraction") << -1.9 << -1LL << top;
        QTest::newRow("small negative") << -0.5 << 0LL << quint64(0);
        QTest::newRow("minus one") << -1.0 << -1LL << top;
        QTest::newRow("not a number") << kNaN << 0LL << quint64(0);
        QTest::newRow("infinity") << kInf << kMax << top;
        QTest::newRow("negative infinity") << -kInf << kMin << (quint64(1) << 63);
        QTest::newRow("2^63") << 9223372036854775808.0 << kMax << (quint64(1) << 63);
        QTest::newRow("largest below 2^63") << 9223372036854774784.0 << 9223372036854774784LL << quint64(9223372036854774784ULL);
        QTest::newRow("-2^63") << -9223372036854775808.0 << kMin << (quint64(1) << 63);
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
