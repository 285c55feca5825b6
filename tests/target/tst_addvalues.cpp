// The add values reach the scheduled value on Return, on leaving a field, through the box
// for years and months and through Clear, never while the user types. Real keys and focus
// changes on a shown window whose row 0 is selected with base day 6.

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QtTest>

#include <memory>

#include "platform/HandlerGuard.h"
#include "platform/Listbox.h"
#include "platform/OneShotTimer.h"
#include "shell/Window1.h"

class TestAddValues : public QObject {
    Q_OBJECT
    std::unique_ptr<Window1> w;
    QStringList failures;

    QLineEdit* field(int i) const { return w->AddValue(i); }
    QString shown(int i) const { return w->AimValue(i)->text(); }
    // Moves the base behind the display's back: only a recomputation shows it.
    void moveBase(const char* text) { w->ListBox1->setCell(0, 4, QString::fromLatin1(text)); }
    static void click(QWidget* control) { QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(6, control->height() / 2)); }

private slots:
    void initTestCase() { setFailureReport([this](const QString& where, const QString&) { failures << where; }); }
    void init()
    {
        failures.clear();
        w = std::make_unique<Window1>();
        w->ListBox1->AddRow(QStringLiteral("f.jpg"));
        moveBase("2021:05:06 07:08:09");
        w->ListBox1->setCellTag(0, 0, QVariant::fromValue(FolderItem(QStringLiteral("/tmp/f.jpg"))));
        w->show();
        QVERIFY(QTest::qWaitForWindowActive(w.get()));
        QTRY_COMPARE(w->Timer4->Mode(), 0);  // the opening's sort has passed
        w->ListBox1->setListIndex(0);
    }
    // The window goes while a field holds the focus, as when the program is closed.
    void cleanup()
    {
        w.reset();
        QVERIFY(failures.isEmpty());
    }

    void startsInTheDaysField()
    {
        QCOMPARE(QApplication::focusWidget(), field(2));
        QCOMPARE(field(2)->selectedText(), QStringLiteral("0"));
        QCOMPARE(shown(2), QStringLiteral("06"));
    }

    void typing_data()
    {
        for (const char* column : {"typed", "dayOnReturn", "leftAs", "dayOnLeaving"})
            QTest::addColumn<QString>(column);
        // On leaving, the base has moved to day 1: only a text that changed recomputes.
        QTest::newRow("5, kept") << "5" << "11" << "5" << "11";
        QTest::newRow("abc") << "abc" << "06" << "0" << "01";
        QTest::newRow("12abc") << "12abc" << "18" << "12" << "13";
        QTest::newRow("007") << "007" << "13" << "7" << "08";
        QTest::newRow("emptied") << "" << "06" << "0" << "01";
        QTest::newRow("minus sign alone") << "-" << "06" << "0" << "01";
        QTest::newRow("-1.9, kept") << "-1.9" << "04" << "-1.9" << "04";
    }
    void typing()
    {
        QFETCH(QString, typed);
        QFETCH(QString, dayOnReturn);
        QFETCH(QString, leftAs);
        QFETCH(QString, dayOnLeaving);
        QTest::keyClick(field(2), Qt::Key_Backspace);
        QTest::keyClicks(field(2), typed);
        QTest::keyClick(field(2), Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(shown(2), QStringLiteral("06"));
        QTest::keyClick(field(2), Qt::Key_Return);
        QCOMPARE(shown(2), dayOnReturn);
        QCOMPARE(field(2)->text(), typed);
        moveBase("2021:05:01 07:08:09");
        QTest::keyClick(field(2), Qt::Key_Return);  // nothing pending: no recomputation
        QCOMPARE(shown(2), dayOnReturn);
        QTest::keyClick(field(2), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), field(3));
        QCOMPARE(field(2)->text(), leftAs);
        QCOMPARE(shown(2), dayOnLeaving);
    }

    void tabOutOfTheSecondsField()
    {
        field(5)->setFocus();
        QTest::keyClicks(field(5), QStringLiteral("30abc"));
        QTest::keyClick(field(5), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), w->TextArea1);
        QCOMPARE(field(5)->text(), QStringLiteral("30"));
        QCOMPARE(shown(5), QStringLiteral("39"));
    }

    // Tab walks days, hours, minutes, seconds, then (by the handler) the usage text; also in
    // a window that is not the active one, as under an X server without a window manager.
    void tabWalksTheFields_data()
    {
        QTest::addColumn<bool>("active");
        QTest::newRow("active window") << true;
        QTest::newRow("another window is active") << false;
    }
    void tabWalksTheFields()
    {
        QFETCH(bool, active);
        QWidget other;
        if (!active) {
            other.show();
            other.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&other));
        }
        for (QWidget* next : std::initializer_list<QWidget*>{field(3), field(4), field(5), w->TextArea1}) {
            QTest::keyClick(w->focusWidget(), Qt::Key_Tab);
            QCOMPARE(w->focusWidget(), next);
        }
    }

    void yearAndMonthBox()
    {
        click(w->AddValCheckBox);
        QVERIFY(field(0)->isEnabled() && field(1)->isEnabled());
        field(0)->setFocus();
        QTest::keyClicks(field(0), QStringLiteral("2"));
        click(w->AddValCheckBox);
        QVERIFY(!field(0)->isEnabled() && !field(1)->isEnabled());
        QCOMPARE(field(0)->text() + shown(0), QStringLiteral("02021"));
        // All "0" and nothing pending: on and off again recompute nothing.
        click(w->AddValCheckBox);
        moveBase("2030:05:06 07:08:09");
        click(w->AddValCheckBox);
        QCOMPARE(shown(0), QStringLiteral("2021"));
    }

    void clearRecomputesAlways()
    {
        moveBase("2030:05:06 07:08:09");
        click(w->ClearBtn);
        QCOMPARE(shown(0), QStringLiteral("2030"));
        field(3)->setFocus();
        QTest::keyClicks(field(3), QStringLiteral("5"));
        click(w->ClearBtn);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(field(i)->text(), QStringLiteral("0"));
        QCOMPARE(shown(3), QStringLiteral("07"));
        QCOMPARE(QApplication::focusWidget(), field(2));
        QCOMPARE(field(2)->selectedText(), QStringLiteral("0"));
    }
};

QTEST_MAIN(TestAddValues)
#include "tst_addvalues.moc"
