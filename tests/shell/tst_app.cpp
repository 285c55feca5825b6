// The application: documents of the launch (appended, then sorted once), documents handed
// over later (appended at the end, unsorted), and a second launch that hands its files to
// this process and ends. The second launch is this executable started again.

#include <QFileOpenEvent>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/Listbox.h"
#include "shell/App.h"
#include "shell/Window1.h"

static const char* const kSecondLaunch = "TST_APP_SECOND_LAUNCH";

class TestApp : public QObject {
    Q_OBJECT
    App* app;
    QTemporaryDir dir;
    QString channel;
    Window1* w = nullptr;

    QString path(const QString& name) const { return dir.filePath(name); }

    void makePicture(const QString& name, int hoursAgo)
    {
        QImage img(4, 4, QImage::Format_RGB32);
        img.fill(Qt::blue);
        QVERIFY(img.save(path(name), "JPEG"));
        QFile f(path(name));
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.setFileTime(QDateTime::currentDateTime().addSecs(-3600 * hoursAgo), QFileDevice::FileModificationTime));
    }

    QStringList listedNames() const
    {
        QStringList names;
        for (int r = 0; r < w->ListBox1->ListCount(); ++r)
            names << w->ListBox1->Cell(r, 0);
        return names;
    }

    // Runs this executable as a second launch with these arguments; its exit code.
    int secondLaunch(const QStringList& args)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(kSecondLaunch, channel);
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.path());
        p.start(QCoreApplication::applicationFilePath(), args);
        // Our event loop has to run meanwhile: the second launch waits for our answer.
        if (!QTest::qWaitFor([&] { return p.state() == QProcess::NotRunning; }, 60000))
            return -1;
        return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -2;
    }

public:
    explicit TestApp(App* a) : app(a) {}

private slots:
    void initTestCase()
    {
        QVERIFY(dir.isValid());
        channel = path("channel");
        makePicture("a old.jpg", 20);
        makePicture("b new.jpg", 1);
        makePicture("c middle.jpg", 8);
        makePicture("d 後から.jpg", 3);
        makePicture("e relative.jpg", 4);
    }

    // Appended in the order of delivery, then sorted once by Timer4 with row 0 selected.
    void launch()
    {
        QVERIFY(!Window1::exists());
        QVERIFY(app->start({path("a old.jpg"), path("b new.jpg"), path("c middle.jpg")}, channel));
        QVERIFY(app->AutoQuit());
        w = Window1::instance();
        QCOMPARE(listedNames(), (QStringList{"a old.jpg", "b new.jpg", "c middle.jpg"}));
        QTRY_COMPARE(w->ListBox1->ListIndex(), 0);
        QCOMPARE(listedNames(), (QStringList{"b new.jpg", "c middle.jpg", "a old.jpg"}));
    }

    // Later documents go to the end, unsorted, and leave the selection as it is.
    void later_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QStringList>("appended");
        QTest::newRow("open request") << "request" << QStringList{path("d 後から.jpg")} << QStringList{"d 後から.jpg"};
        QTest::newRow("file open event") << "event" << QStringList{path("a old.jpg")} << QStringList{"a old.jpg"};
        QTest::newRow("second launch") << "launch" << QStringList{path("d 後から.jpg"), path("b new.jpg")}
                                       << QStringList{"d 後から.jpg", "b new.jpg"};
        QTest::newRow("second launch, relative path")
            << "launch" << QStringList{"e relative.jpg"} << QStringList{"e relative.jpg"};
        QTest::newRow("second launch without files") << "launch" << QStringList{} << QStringList{};
        QTest::newRow("second launch past a stranger") << "stranger" << QStringList{path("b new.jpg")}
                                                       << QStringList{"b new.jpg"};
    }
    void later()
    {
        QFETCH(QString, how);
        QFETCH(QStringList, args);
        QFETCH(QStringList, appended);
        QVERIFY(w->ListBox1->ListCount() >= 2);
        w->ListBox1->setListIndex(1);
        const QStringList before = listedNames();
        if (how == "request") {
            for (const QString& a : args)
                app->Event_OpenDocument(FolderItem(a));
        } else if (how == "event") {
            for (const QString& a : args) {
                QFileOpenEvent e(a);
                QCoreApplication::sendEvent(app, &e);
            }
        } else {
            // Another process of the user that connects and sends half a message blocks nobody.
            QLocalSocket stranger;
            if (how == "stranger") {
                stranger.connectToServer(channel);
                QVERIFY(stranger.waitForConnected(5000));
                stranger.write(QByteArray("\x00\x00\x00\x10" "abc", 7));
                QVERIFY(stranger.waitForBytesWritten(5000));
            }
            QCOMPARE(secondLaunch(args), 0);
        }
        QTRY_COMPARE(listedNames(), before + appended);
        QCOMPARE(w->ListBox1->ListIndex(), 1);
        QCOMPARE(Window1::instance(), w);
    }

};

int main(int argc, char** argv)
{
    App app(argc, argv);
    if (qEnvironmentVariableIsSet(kSecondLaunch)) {
        // Answers 0 when it handed its files over, 3 when it became the running copy.
        return app.start(app.launchDocuments(), qEnvironmentVariable(kSecondLaunch)) ? 3 : 0;
    }
    TestApp test(&app);
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app.moc"
