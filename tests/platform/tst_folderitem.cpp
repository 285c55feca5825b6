#include "platform/FolderItem.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>

class TestFolderItem : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void paths_data();
    void paths();
    void nilUse();
    void modificationDate_data();
    void modificationDate();
    void creationDate();
    void gone();
    void openings_data();
    void openings();

private:
    // Beside the test rather than in /tmp, which may be a file system that records no birth.
    QTemporaryDir dir_{QDir::currentPath() + "/folderitem-XXXXXX"};
};

void TestFolderItem::initTestCase()
{
    qputenv("TZ", "Europe/Berlin");  // a zone with daylight saving
    tzset();
}

void TestFolderItem::paths_data()
{
    QTest::addColumn<QString>("given");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");

    QTest::newRow("absolute") << "/a/b/IMG_0001.JPG" << "/a/b/IMG_0001.JPG" << "IMG_0001.JPG";
    QTest::newRow("trailing slash") << "/a/b/" << "/a/b" << "b";
    QTest::newRow("dot steps") << "/a/./b/../c.jpg" << "/a/c.jpg" << "c.jpg";
    QTest::newRow("doubled slashes") << "/a//b.jpg" << "/a/b.jpg" << "b.jpg";
    QTest::newRow("relative") << "x/y.jpg" << QDir::currentPath() + "/x/y.jpg" << "y.jpg";
    QTest::newRow("root") << "/" << "/" << "/";
    QTest::newRow("Japanese name") << "/写真/日付.jpg" << "/写真/日付.jpg" << "日付.jpg";
}

void TestFolderItem::paths()
{
    QFETCH(QString, given);
    QFETCH(QString, path);
    QFETCH(QString, name);

    const FolderItem f(given);
    QVERIFY(!f.isNil());
    QCOMPARE(f.path(), path);
    QCOMPARE(f.Name(), name);
}

void TestFolderItem::nilUse()
{
    for (const FolderItem& f : {FolderItem(), FolderItem(QString())}) {
        QVERIFY(f.isNil());
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.Name());
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.Exists());
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.CreationDate());
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.ModificationDate());
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.setCreationDate(Date(2001, 1, 1)));
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.setModificationDate(Date(2001, 1, 1)));
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.OpenAsBinaryFile(false));
        QVERIFY_THROWS_EXCEPTION(NilObjectException, f.OpenAsPicture());
    }
}

void TestFolderItem::modificationDate_data()
{
    QTest::addColumn<bool>("folder");
    QTest::addColumn<Date>("date");

    QTest::newRow("file, winter time") << false << Date(2001, 2, 3, 4, 5, 6);
    QTest::newRow("file, summer time") << false << Date(2019, 7, 31, 23, 59, 59);
    QTest::newRow("file, before 1970") << false << Date(1969, 12, 31, 22, 0, 1);
    QTest::newRow("folder") << true << Date(2010, 10, 10, 10, 10, 10);
}

void TestFolderItem::modificationDate()
{
    QFETCH(bool, folder);
    QFETCH(Date, date);

    const QString path = dir_.filePath(QTest::currentDataTag());
    QVERIFY(folder ? QDir().mkpath(path) : QFile(path).open(QIODevice::WriteOnly));
    const timespec atime[2] = {{1000000000, 0}, {0, UTIME_OMIT}};
    QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), atime, 0), 0);

    const FolderItem f(path);
    QVERIFY(f.setModificationDate(date));
    QCOMPARE(f.ModificationDate().SQLDateTime(), date.SQLDateTime());
    QCOMPARE(QFileInfo(path).lastModified(), QDateTime(QDate(int(date.Year()), int(date.Month()), int(date.Day())),
                                                       QTime(int(date.Hour()), int(date.Minute()), int(date.Second()))));
    QCOMPARE(QFileInfo(path).lastRead().toSecsSinceEpoch(), atime[0].tv_sec);  // kept
}

void TestFolderItem::creationDate()
{
    const QString path = dir_.filePath("born now");
    QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    const FolderItem f(path);
    const Date old(2001, 2, 3, 4, 5, 6);
    QVERIFY(f.setModificationDate(old));
    const QDateTime birth = QFileInfo(path).birthTime();
    // Where the file system records the birth, that is the creation date; else the modification.
    QCOMPARE(f.CreationDate().SQLDateTime(),
             birth.isValid() ? birth.toString("yyyy-MM-dd HH:mm:ss") : old.SQLDateTime());

    const Date before = f.CreationDate();
    QVERIFY(!f.setCreationDate(Date(1999, 9, 9)));  // this OS cannot
    QCOMPARE(f.CreationDate(), before);
    QCOMPARE(f.ModificationDate(), old);
}

void TestFolderItem::gone()
{
    const FolderItem f(dir_.filePath("never there"));
    QVERIFY(!f.Exists());
    for (auto date : {&FolderItem::CreationDate, &FolderItem::ModificationDate}) {
        try {
            (f.*date)();
            QFAIL("a date of a file that is not there");
        } catch (const NilObjectException& e) {
            QCOMPARE(QString::fromUtf8(e.what()),
                     QStringLiteral("“never there” can no longer be read; it may have been moved or deleted."));
        }
    }
    QVERIFY(!f.setModificationDate(Date(2001, 1, 1)));
    QVERIFY(!f.setCreationDate(Date(2001, 1, 1)));
    QVERIFY(!QFileInfo::exists(f.path()));  // nothing made it
}

void TestFolderItem::openings_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");  // empty: a folder; "fifo": a FIFO
    QTest::addColumn<bool>("stream");
    QTest::addColumn<QSize>("picture");

    QByteArray png;
    QBuffer buffer(&png);
    QImage(7, 5, QImage::Format_RGB32).save(&buffer, "PNG");
    QTest::newRow("picture") << "a.png" << png << true << QSize(7, 5);
    QTest::newRow("picture with a wrong suffix") << "b.jpg" << png << true << QSize(7, 5);
    QTest::newRow("text") << "c.png" << QByteArray("not a picture") << true << QSize(0, 0);
    QTest::newRow("folder") << "d.png" << QByteArray() << false << QSize(0, 0);
    QTest::newRow("fifo, which no open may wait for") << "e.png" << QByteArray("fifo") << false << QSize(0, 0);
}

void TestFolderItem::openings()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, stream);
    QFETCH(QSize, picture);

    QFile file(dir_.filePath(name));
    if (bytes == "fifo")
        QCOMPARE(::mkfifo(QFile::encodeName(file.fileName()).constData(), 0600), 0);
    else
        QVERIFY(bytes.isEmpty() ? QDir().mkpath(file.fileName()) : file.open(QIODevice::WriteOnly) && file.write(bytes));
    file.close();
    const FolderItem f(file.fileName());
    QCOMPARE(f.Directory(), bytes.isEmpty());
    QCOMPARE(f.OpenAsBinaryFile(false).isNil(), !stream);
    QCOMPARE(f.OpenAsBinaryFile(true).isNil(), !stream);
    QCOMPARE(f.OpenAsPicture().size(), picture);
}

QTEST_MAIN(TestFolderItem)
#include "tst_folderitem.moc"
