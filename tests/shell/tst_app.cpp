// The application: documents of the launch (appended, then sorted once), documents handed
// over later (appended at the end, unsorted), and a second launch that hands its files to
// this process and ends. The second launch is this executable started again.

#include <QFileOpenEvent>
#include <QLocalSocket>
#include <QProcess>
#include <QtTest>

#include "platform/Listbox.h"
#include "shell/App.h"
#include "shell/Window1.h"

static const char* const kSecondLaunch = "TST_APP_SECOND_LAUNCH";

class TestApp : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    const QString channel = dir.filePath("channel");
    Window1* w = nullptr;

    QStringList listedNames() const
    {
        QStringList names;
        for (int r = 0; r < w->ListBox1->ListCount(); ++r)
            names << w->ListBox1->Cell(r, 0);
        return names;
    }

private slots:
    void initTestCase()
    {
        qputenv(kSecondLaunch, channel.toUtf8());  // for the second launches, which inherit it
        const QDateTime now = QDateTime::currentDateTime();
        const std::pair<const char*, int> hoursAgo[] = {{"old", 20}, {"new", 1}, {"middle", 8}, {"後から", 3},
                                                        {"relative", 4}};
        for (const auto& [name, hours] : hoursAgo) {
            QFile f(dir.filePath(QString::fromUtf8(name)));
            QVERIFY(f.open(QIODevice::WriteOnly));
            QVERIFY(f.setFileTime(now.addSecs(-3600 * hours), QFileDevice::FileModificationTime));
        }
    }

    // Appended in the order of delivery, then sorted once by Timer4 with row 0 selected.
    void launch()
    {
        QVERIFY(!Window1::exists());
        const QStringList launched = {dir.filePath("old"), dir.filePath("new"), dir.filePath("middle")};
        QVERIFY(static_cast<App*>(qApp)->start(launched, channel));
        w = Window1::instance();
        QCOMPARE(listedNames(), (QStringList{"old", "new", "middle"}));
        QTRY_COMPARE(w->ListBox1->ListIndex(), 0);
        QCOMPARE(listedNames(), (QStringList{"new", "middle", "old"}));
    }

    // Later documents go to the end, unsorted, and leave the selection as it is.
    void later_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QStringList>("args");
        QTest::newRow("file open event") << "event" << QStringList{dir.filePath("old")};
        QTest::newRow("second launch, a relative path too")
            << "launch" << QStringList{dir.filePath("後から"), "relative"};
        QTest::newRow("second launch without files") << "launch" << QStringList{};
        QTest::newRow("second launch past a stranger") << "stranger" << QStringList{dir.filePath("new")};
    }
    void later()
    {
        QFETCH(QString, how);
        QFETCH(QStringList, args);
        w->ListBox1->setListIndex(1);
        QStringList expected = listedNames();
        for (const QString& a : args)
            expected << QFileInfo(a).fileName();
        if (how == "event") {
            QFileOpenEvent e(args[0]);
            QCoreApplication::sendEvent(qApp, &e);
        } else {
            // Another process of the user that connects and sends half a message blocks nobody.
            QLocalSocket stranger;
            if (how == "stranger") {
                stranger.connectToServer(channel);
                QVERIFY(stranger.waitForConnected(5000));
                stranger.write(QByteArray("\x00\x00\x00\x10" "abc", 7));
                QVERIFY(stranger.waitForBytesWritten(5000));
            }
            QProcess second;
            second.setWorkingDirectory(dir.path());
            second.start(QCoreApplication::applicationFilePath(), args);
            // Our event loop runs meanwhile: the second launch waits for our answer.
            QVERIFY(QTest::qWaitFor([&] { return second.state() == QProcess::NotRunning; }, 60000));
            QCOMPARE(second.exitStatus(), QProcess::NormalExit);
            QCOMPARE(second.exitCode(), 0);  // handed over, didn't become a second copy
        }
        QTRY_COMPARE(listedNames(), expected);
        QCOMPARE(w->ListBox1->ListIndex(), 1);
    }
};

int main(int argc, char** argv)
{
    App app(argc, argv);
    if (qEnvironmentVariableIsSet(kSecondLaunch)) {
        // Answers 0 when it handed its files over, 3 when it became the running copy.
        return app.start(app.launchDocuments(), qEnvironmentVariable(kSecondLaunch)) ? 3 : 0;
    }
    TestApp test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_app.moc"
