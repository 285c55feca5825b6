#pragma once
#include <QDialog>
#include <QImage>

class Canvas;
class QLabel;
class QPlainTextEdit;

// The About window: the icon, the name, the version, a legal notice line and a short
// description. A press anywhere in it hides it; the next About shows the same window
// again. Its close button ends it, and the next About makes a new one.
class AboutWindow : public QDialog {
    Q_OBJECT
public:
    // The one instance, made at first use.
    static AboutWindow* instance();
    static bool exists();
    explicit AboutWindow(QWidget* parent = nullptr);

    // Shows the window modally; returns when it is hidden or closed.
    void ShowModal();

    Canvas* Canvas1 = nullptr;
    QLabel* AppName = nullptr;
    QLabel* Label1 = nullptr;
    QLabel* VerString = nullptr;
    QPlainTextEdit* TextArea1 = nullptr;
    QLabel* Label2 = nullptr;

    void AppName_Open();
    void VerString_Open();

protected:
    void mousePressEvent(QMouseEvent* e) override;  // Event_MouseDown
    void closeEvent(QCloseEvent* e) override;
};

// The program's icon at 128 by 128, loaded at the first call and kept.
QImage vlk_Icon_BigSur_128();
