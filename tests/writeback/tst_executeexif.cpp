// The execute run on real-structure JPEGs, with exiftool as the oracle: it reads the new
// dates, and its validation finds nothing in the written file that it did not find before.

#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <ctime>

#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/MsgBox.h"
#include "shell/Window1.h"

namespace {

QString exiftool(const QStringList& args)
{
    QProcess p;
    p.start(QStringLiteral("exiftool"), args);
    p.waitForFinished(60000);
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

}  // namespace

class ExecuteExifTest : public QObject {
    Q_OBJECT
    QTemporaryDir dir;

private slots:
    void initTestCase()
    {
        qputenv("TZ", "America/New_York");
        tzset();
        if (QStandardPaths::findExecutable(QStringLiteral("exiftool")).isEmpty())
            QSKIP("exiftool is not installed (scripts/test installs it)");
        QVERIFY(dir.isValid());
    }

    void shiftedDates_data()
    {
        QTest::addColumn<QString>("byteOrder");
        QTest::addColumn<QString>("ticks");     // Exif columns ticked, of "345"
        QTest::addColumn<QStringList>("after");  // ModifyDate, DateTimeOriginal, CreateDate
        // Base: DateTimeOriginal 2020:02:28 12:00:00; offset one day and minus two hours.
        const QString aim = QStringLiteral("2020:02:29 10:00:00");
        const QString modify = QStringLiteral("2021:07:04 08:09:10");
        const QString create = QStringLiteral("2020:02:28 12:00:01");
        QTest::newRow("Intel byte order, all three") << "II" << "345" << QStringList{aim, aim, aim};
        QTest::newRow("Motorola byte order, all three") << "MM" << "345" << QStringList{aim, aim, aim};
        QTest::newRow("Intel byte order, shooting date only") << "II" << "4"
                                                              << QStringList{modify, aim, create};
        QTest::newRow("Motorola byte order, image modification only") << "MM" << "3"
                                                                      << QStringList{aim, "2020:02:28 12:00:00", create};
    }
    void shiftedDates()
    {
        QFETCH(QString, byteOrder);
        QFETCH(QString, ticks);
        QFETCH(QStringList, after);
        const QString path = dir.filePath(QStringLiteral("%1_%2.jpg").arg(byteOrder, ticks));
        QImage picture(96, 64, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        QVERIFY(picture.save(path, "JPEG"));
        exiftool({"-q", "-overwrite_original", "-ExifByteOrder=" + byteOrder, "-Make=Velkaro",
                  "-ModifyDate=2021:07:04 08:09:10", "-DateTimeOriginal=2020:02:28 12:00:00",
                  "-CreateDate=2020:02:28 12:00:01", "-ExposureTime=1/125", path});
        const QStringList validate{"-s", "-s", "-validate", "-warning", "-a", path};
        const QString validBefore = exiftool(validate);
        const QByteArray before = readAll(path);

        Window1 w;
        setMsgBoxAnswer([](const QString&, int, const QString&) { return 1; });
        QStringList failures;
        setFailureReport([&](const QString& where, const QString& what) { failures << where + what; });
        w.addFileToTable(FolderItem(path));
        QCOMPARE(w.ListBox1->ListCount(), 1);
        for (int c = 1; c <= 5; ++c)
            w.ListBox1->setCellCheck(0, c, ticks.contains(QString::number(c)));
        QList<qint64> positions;
        for (int c = 3; c <= 5; ++c)
            if (ticks.contains(QString::number(c)))
                positions << qint64(w.ListBox1->CellTag(0, c).toDouble());
        w.baseChoice = 4;
        w.AddValue(2)->setText(QStringLiteral("1"));
        w.AddValue(3)->setText(QStringLiteral("-2"));
        w.AimValue(0)->setText(QStringLiteral("2020"));
        w.ExecuteBtn->click();
        setMsgBoxAnswer({});
        setFailureReport({});
        QVERIFY(failures.isEmpty());

        QCOMPARE(exiftool({"-s3", "-ModifyDate", "-DateTimeOriginal", "-CreateDate", path}).split('\n'), after);
        for (const QString& line : exiftool(validate).split('\n'))
            QVERIFY2(validBefore.split('\n').contains(line), qPrintable(line));
        // Byte for byte: only the 19 bytes at each ticked position differ.
        QByteArray expected = before;
        for (qint64 pos : positions)
            expected.replace(pos, 19, "2020:02:29 10:00:00");
        QCOMPARE(readAll(path), expected);
    }
};

QTEST_MAIN(ExecuteExifTest)
#include "tst_executeexif.moc"
