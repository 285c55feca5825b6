#pragma once
// Window1: the one window of the program. It owns every control, every field and, through
// the table ListBox1, every file: a row is a file. This header is the map of the program;
// each group of methods is defined in the folder named above it.

#include <QMainWindow>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

#include "platform/files/BinaryStream.h"
#include "platform/widgets/ControlArray.h"
#include "platform/text/Date.h"
#include "platform/files/FolderItem.h"
#include "platform/base/Handle.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QToolButton;
class Canvas;
class DragItem;
class Listbox;
class LockLayout;
class OneShotTimer;
class PictureWorker;
class RectangleShape;
class RoundRectangleShape;
class QDialog;
struct JournalRun;
enum class RunChoice;
struct ScaledPicture;

// The marker of a date that a file did not give; logic compares against it.
inline const QString kNoExif = QStringLiteral("Exif取得不能");

class Window1 : public QMainWindow {
    Q_OBJECT
public:
    // The one main window, made at first use.
    static Window1* instance();
    static bool exists();
    explicit Window1(QWidget* parent = nullptr);
    ~Window1() override;

    // ---- Fields -------------------------------------------------------------------------
    bool isLittleEndian = false;
    double TiffOfs = 0;
    Handle<BinaryStream> bs;
    bool dirtyValue = false;
    int curRow = 0;
    int clickedCheckColumn = 0;
    int clickedCheckRow = 0;
    int baseChoice = 0;
    std::array<int, 2> clickedCell{0, 0};
    PictureWorker* previewWorker = nullptr;  // decodes the preview off the event loop
    // The items of the intake in hand that could not be listed, each a sentence that names
    // it and says why; named together in one report when the intake is over.
    QStringList unlistedItems;

    // ---- Controls (src/shell/Window1_controls.cpp), back to front ------------------------
    RectangleShape* Winback = nullptr;
    Listbox* ListBox1 = nullptr;
    Listbox* ListHeader = nullptr;
    OneShotTimer* Timer1 = nullptr;
    OneShotTimer* Timer2 = nullptr;
    QCheckBox* OnlyPicture = nullptr;
    QLineEdit* FileNameTag = nullptr;
    OneShotTimer* Timer3 = nullptr;
    OneShotTimer* Timer4 = nullptr;
    RoundRectangleShape* ImageBack = nullptr;
    Canvas* Canvas1 = nullptr;
    QPlainTextEdit* TextArea1 = nullptr;
    QGroupBox* AimGroup = nullptr;
    ControlArray<QLineEdit> AimValue;   // 0..5: year, month, day, hour, minute, second
    ControlArray<QLabel> LabText;       // 0..5 in AddGroup, 6..11 in AimGroup
    QGroupBox* BaseGroup = nullptr;
    ControlArray<QRadioButton> BaseKind;  // 1..5: the base column of ListBox1
    OneShotTimer* Timer5 = nullptr;
    QGroupBox* AddGroup = nullptr;
    ControlArray<QLineEdit> AddValue;   // 0..5: year, month, day, hour, minute, second
    QToolButton* ClearBtn = nullptr;
    QCheckBox* AddValCheckBox = nullptr;
    QPushButton* ExecuteBtn = nullptr;
    LockLayout* lockLayout = nullptr;

    // ---- src/shell: start-up --------------------------------------------------------------
    void CreateControls();
    void Event_Open();
    // Each subsystem binds its own handlers (through the handler guard) and runs the open
    // events of its controls; the window's construction calls them in the open order.
    void bindTableHandlers();      // src/table/FileTable.cpp
    void bindCheckBoxHandlers();   // src/table/CheckBoxes.cpp
    void bindIntakeHandlers();     // src/table/Intake.cpp
    void bindTargetHandlers();     // src/target/
    void bindWritebackHandlers();  // src/writeback/
    void bindPreviewHandlers();    // src/preview/
    void bindMenu();               // src/shell/MenuBar1.cpp
    void bindJournalHandlers();    // src/journal/
    void bindKeepCopies();         // src/writeback/KeepCopies.cpp
    void openTableControls();      // ListBox1_Open, ListHeader_Open
    void openTargetControls();     // BaseKind_Open (1, 2, 4, 5, 3), AddValue_Open (0..5)

    // ---- src/exif: the TIFF/Exif walk -----------------------------------------------------
    void getExifInfo();
    void walkIFDChain(double position);  // ExifWalk.cpp: the chain from that directory on
    void getExifByStructure();           // ExifByStructure.cpp: files the first bytes don't serve
    double getIFDEntry();
    double analyzeIFD(double pos);  // the next offset in the chain; entries are getExifInfo's
    QString culcType(int tag, QByteArrayView value, int type, qint64 count);
    // A movie's dates from its movie header (src/exif/MovieInfo.cpp); false when the file is
    // no movie.
    bool getMovieInfo();

    // ---- src/table: the file table and its rows -------------------------------------------
    void ListBox1_Open();
    void ListHeader_Open();
    void addFileToTable(const FolderItem& f);
    void clearTables();
    void optimizeRowCheck(int row);
    // After a write: the date cell shows what its file holds at the date's place now (the
    // 19 bytes of an Exif text, or a movie time's field, whose tag keeps the new value).
    void showDateHeld(int row, int column, const QByteArray& holds);

    // ---- src/table: check boxes -----------------------------------------------------------
    bool ListBox1_CellClick(int row, int column, int x, int y);
    bool ListHeader_CellClick(int row, int column, int x, int y);
    void ListHeader_Change();
    void Timer1_Action();
    void Timer2_Action();
    void Timer3_Action();
    void setRowCheck(int row);
    void setColumnCheck(int column);

    // ---- src/table: file intake -----------------------------------------------------------
    void Event_DragEnter();
    void Event_DragExit();
    void Event_DropObject(DragItem& obj, int action);
    void OnlyPicture_Action();
    void Timer4_Action();
    void Timer5_Action();
    void reportUnlisted();

    // ---- src/target: add values, base choice, aim value -----------------------------------
    void AddValue_Open(int index);
    void AddValue_TextChange(int index);
    bool AddValue_KeyDown(int index, const QString& key);
    void AddValue_LostFocus(int index);
    void AddValCheckBox_Action();
    void ClearBtn_Action();
    void BaseKind_Open(int index);
    void BaseKind_Action(int index);
    std::optional<Date> culcAimValue(int row);  // nullopt: the base cell is no date
    std::optional<Date> culcBaseDate(int row);  // the base cell alone, as a date
    // d plus the six add values (years to seconds), one unit after the other as the run
    // applies them.
    static Date culcAddValues(Date d, const std::array<double, 6>& add);
    void changeAimValue();
    void dispAimValue(const std::optional<Date>& d);
    void clearAimValue();
    void ListBox1_Change();

    // ---- src/target: the offset from a known time -----------------------------------------
    // The selected row's true time, asked of the user, becomes the add values.
    void EditOffsetFromKnownTime_Action();
    bool canOffsetFromKnownTime();     // a row is selected and its base cell is a date
    void enableOffsetFromKnownTime();  // the menu item follows canOffsetFromKnownTime
    // The add values that take base to known; years and months only when withYearsAndMonths.
    static std::array<qint64, 6> offsetBetween(const Date& base, const Date& known, bool withYearsAndMonths);

    // ---- src/writeback: the execute run ---------------------------------------------------
    void ExecuteBtn_Action();
    // The check that comes before the first byte of a run: a line for each ticked date that
    // cannot be changed safely. Reads the files, writes nothing.
    QStringList checkExecute();
    // Whether copies of the dates in XMP, IPTC and other directories move with them (the
    // Edit menu's checkable item, ticked at start).
    bool keepCopiesInStep() const;

    // ---- src/journal: the way back from a run ---------------------------------------------
    void FileUndoLastRun_Action();
    void FileRunHistory_Action();
    QDialog* makeRunHistory();  // the Run History dialog, not yet shown
    // At start, after the window opens: each run without its closing record is offered
    // for undo.
    void recoverInterruptedRuns();
    // The three choices for a run that did not end, each checked and reported; stopped
    // says where and why a run stopped just now.
    void offerRunChoices(const QString& fileName, const JournalRun& run, const QString& stopped);
    void settleRun(const QString& fileName, const JournalRun& run, RunChoice choice);
    void showRunInTable(const JournalRun& run);

    // ---- src/preview: preview pane and hover tag ------------------------------------------
    void drawCanvas(int row);
    void drawPicture(const ScaledPicture& picture);
    void optimizePictureSize(int w, int h, int& boxWidth, int& boxHeight, int& offsetX, int& offsetY);
    void ListBox1_MouseMove(int x, int y);
    void ListBox1_MouseExit();

    // ---- src/shell: menu ------------------------------------------------------------------
    bool _AppleAbout_Action();
    // The chosen files and folders are appended as the desktop's hand-over appends them.
    void FileAddFiles_Action();

protected:
    void dragEnterEvent(QDragEnterEvent* e) override;
    void dragLeaveEvent(QDragLeaveEvent* e) override;
    void dropEvent(QDropEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
};
