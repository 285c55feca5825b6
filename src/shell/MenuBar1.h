#pragma once
#include <QMenuBar>

class QAction;
class QMenu;

// The program's one menu bar: File (Add Files, the journal's items, Quit), Edit (the
// standard editing items and the offset from a known time) and Help (About). Each item is
// a QAction whose objectName is the item's name, as is each menu's and its menuAction's;
// the separators share the name "UntitledSeparator" and differ by their "Index" property.
// Quit and About carry the menu roles that move them into the application menu where the
// desktop has one.
class MenuBar1 : public QMenuBar {
    Q_OBJECT
public:
    // The one instance, made at first use. The window that shows it owns it; a later use
    // after that window has gone makes it anew.
    static MenuBar1* instance();
    explicit MenuBar1(QWidget* parent = nullptr);

    // The item of that name (and, for a member of an array, that index), or nullptr.
    QAction* lookup(const QString& name, int index = -1) const;
    QMenu* EditMenu() const;

private:
    void Untitled0();
    void Untitled1();
    static QMenu* makeMenu(QMenuBar* bar, const QString& name, const QString& title);
    QAction* addItem(QWidget* into, const QString& name, const QString& caption,
                     const QKeySequence& shortcut, int index = -1);
    void enableEditItems(bool opening);
};
