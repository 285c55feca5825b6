// Files entering the table by drops on the window, and the OnlyPicture walk. Drags go to
// the window's native window at a point, so that Qt picks the widget that takes them.

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/Shapes.h"
#include "shell/Window1.h"

class TestIntake : public QObject {
    Q_OBJECT
    Window1* w = nullptr;
    QTemporaryDir dir;
    QStringList failures;  // where each reported failure happened

    void makeFile(const QString& name, int hoursAgo, bool picture)
    {
        QFile f(dir.filePath(name));
        QVERIFY(f.open(QIODevice::WriteOnly));
        if (picture) {
            QImage img(8, 6, QImage::Format_RGB32);
            img.fill(Qt::darkGreen);
            QVERIFY(img.save(&f, "JPEG"));
        } else {
            f.write("not a picture\n");
        }
        QVERIFY(f.flush());
        QVERIFY(f.setFileTime(QDateTime::currentDateTime().addSecs(-3600 * hoursAgo), QFileDevice::FileModificationTime));
    }

    // Enters the window at a point of its content area, then drops there or leaves.
    void drag(const QMimeData& mime, QPoint at, bool drop)
    {
        const QPoint p = w->centralWidget()->mapTo(w, at);
        QDragEnterEvent enter(p, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(w->windowHandle(), &enter);
        QVERIFY(w->Winback->isVisible());
        QDropEvent dropped(p, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QDragLeaveEvent left;
        QCoreApplication::sendEvent(w->windowHandle(), drop ? static_cast<QEvent*>(&dropped) : &left);
        QVERIFY(!w->Winback->isVisible());
    }

    QStringList listed() const
    {
        QStringList names;
        for (int r = 0; r < w->ListBox1->ListCount(); ++r)
            names << w->ListBox1->Cell(r, 0);
        return names;
    }

    // Rows put into the table directly, each with its file in the tag of column 0 ("" none).
    void listDirectly(const QStringList& names)
    {
        w->ListBox1->DeleteAllRows();
        for (const QString& n : names) {
            w->ListBox1->AddRow(n);
            if (!n.isEmpty())
                w->ListBox1->setCellTag(w->ListBox1->ListCount() - 1, 0, QVariant::fromValue(FolderItem(dir.filePath(n))));
        }
    }

private slots:
    void initTestCase()
    {
        setFailureReport([this](const QString& where, const QString&) { failures << where; });
        QVERIFY(dir.isValid());
        makeFile("old.jpg", 30, true);
        makeFile("new.jpg", 2, true);
        makeFile("middle.txt", 10, false);
        makeFile("写真 と 空白.jpg", 5, true);
        QVERIFY(QDir(dir.path()).mkdir("folder"));
        makeFile("folder/inside.jpg", 1, true);  // the folder is changed now, after all of them
        w = Window1::instance();
        QVERIFY(QTest::qWaitForWindowExposed(w));
    }

    void init() { failures.clear(); }

    // Wherever the pointer is, the window takes the drag; nothing else changes.
    void enterAndLeave_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::newRow("over the usage text") << QPoint(300, 100);
        QTest::newRow("over the table") << QPoint(300, 400);
        QTest::newRow("over an add value field") << QPoint(600, 150);
    }
    void enterAndLeave()
    {
        QFETCH(QPoint, at);
        listDirectly({"kept.jpg"});
        QMimeData mime;  // file managers add the paths as text, which a text field would take
        mime.setUrls({QUrl::fromLocalFile(dir.filePath("new.jpg"))});
        mime.setText(dir.filePath("new.jpg"));
        drag(mime, at, false);
        QCOMPARE(listed(), QStringList{"kept.jpg"});
        QCOMPARE(w->AddValue(2)->text(), "0");
    }

    // A drop replaces the list and sorts it once, newest modification date first; a drop
    // without a file item as its first item leaves the list as it was.
    void drop_data()
    {
        QTest::addColumn<QList<QUrl>>("urls");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QStringList>("failed");  // where a failure was reported
        auto files = [this](const QStringList& names) {
            QList<QUrl> urls;
            for (const QString& n : names)
                urls << QUrl::fromLocalFile(dir.filePath(n));
            return urls;
        };
        const QStringList before{"earlier.jpg", "another.jpg"};
        QTest::newRow("text") << QList<QUrl>{} << "some words" << before << 1 << QStringList{};
        QTest::newRow("web link") << QList<QUrl>{QUrl("https://example.org/a.jpg")} << "" << before << 1 << QStringList{};
        QTest::newRow("two pictures") << files({"old.jpg", "new.jpg"}) << "" << QStringList{"new.jpg", "old.jpg"} << 0 << QStringList{};
        QTest::newRow("folder lists itself only") << files({"folder"}) << "" << QStringList{"folder"} << 0 << QStringList{};
        QTest::newRow("japanese name with spaces") << files({"old.jpg", "写真 と 空白.jpg"}) << ""
                                                   << QStringList{"写真 と 空白.jpg", "old.jpg"} << 0 << QStringList{};
        // Its dates can't be read: the drop ends there, with its row, unsorted, and says so.
        QTest::newRow("a file that vanished") << files({"gone.jpg", "new.jpg"}) << "" << QStringList{"gone.jpg"} << -1
                                              << QStringList{"add the dropped files"};
        QTest::newRow("mixed, with a web link") << files({"middle.txt", "old.jpg", "folder"}) + QList<QUrl>{QUrl("https://x.org/")}
                                                << "words" << QStringList{"folder", "middle.txt", "old.jpg"} << 0 << QStringList{};
    }
    void drop()
    {
        QFETCH(QList<QUrl>, urls);
        QFETCH(QString, text);
        listDirectly({"earlier.jpg", "another.jpg"});
        w->ListBox1->setListIndex(1);
        QMimeData mime;
        mime.setUrls(urls);
        if (!text.isEmpty())
            mime.setText(text);
        drag(mime, QPoint(300, 100), true);
        QTEST(listed(), "expected");
        QTEST(w->ListBox1->ListIndex(), "selected");
        QTEST(failures, "failed");
    }

    // Ticking prunes the rows whose file gives no picture; unticking changes nothing.
    void onlyPicture_data()
    {
        QTest::addColumn<bool>("tick");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QStringList>("kept");
        QTest::newRow("tick keeps pictures in order") << true
                                                      << QStringList{"new.jpg", "middle.txt", "old.jpg", "folder", "gone.jpg"}
                                                      << QStringList{"new.jpg", "old.jpg"};
        QTest::newRow("untick") << false << QStringList{"middle.txt", "new.jpg"} << QStringList{"middle.txt", "new.jpg"};
    }
    void onlyPicture()
    {
        QFETCH(bool, tick);
        QFETCH(QStringList, rows);
        w->OnlyPicture->setChecked(!tick);
        QTRY_VERIFY(w->OnlyPicture->isVisible());
        listDirectly(rows);
        w->OnlyPicture->setChecked(tick);
        QVERIFY(!w->OnlyPicture->isVisible());  // until the walk is over
        QCOMPARE(listed(), rows);
        QTRY_VERIFY(w->OnlyPicture->isVisible());
        QTEST(listed(), "kept");
        QCOMPARE(failures, QStringList{});
    }

    // A row without its file ends the walk there: reported, the rest kept, the box hidden.
    void onlyPictureWalkFails()
    {
        w->OnlyPicture->setChecked(false);
        QTRY_VERIFY(w->OnlyPicture->isVisible());
        listDirectly({"new.jpg", "", "middle.txt"});
        w->OnlyPicture->setChecked(true);
        QTRY_COMPARE(failures, QStringList{"keep only still images in the list"});
        QCOMPARE(listed(), (QStringList{"new.jpg", ""}));
        QVERIFY(!w->OnlyPicture->isVisible());
    }
};

QTEST_MAIN(TestIntake)
#include "tst_intake.moc"
