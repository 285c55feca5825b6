<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP">
<context>
    <name></name>
    <message id="Globals.kEditUndo">
        <source></source>
        <translation>取り消す</translation>
    </message>
    <message id="Globals.kEditRedo">
        <source></source>
        <translation>やり直す</translation>
    </message>
    <message id="Globals.kAppAbout">
        <source></source>
        <translation>このアプリケーションについて</translation>
    </message>
    <message id="Globals.kWinTitle">
        <source></source>
        <translation>Velkaro</translation>
    </message>
    <message id="Globals.kEditQuit">
        <source></source>
        <translation>終了</translation>
    </message>
    <message id="Globals.kEditPaste">
        <source></source>
        <translation>ペースト</translation>
    </message>
    <message id="Globals.kEditMenu">
        <source></source>
        <translation>編集</translation>
    </message>
    <message id="Globals.kEditCut">
        <source></source>
        <translation>カット</translation>
    </message>
    <message id="Globals.kEditCopy">
        <source></source>
        <translation>コピー</translation>
    </message>
    <message id="Globals.kEditClear">
        <source></source>
        <translation>消去</translation>
    </message>
    <message id="Globals.kAppName">
        <source></source>
        <translation>Velkaro</translation>
    </message>
    <message id="FolderItem.doesNotExist">
        <source>“%1” does not exist.</source>
        <translation>「%1」は存在しません。</translation>
    </message>
    <message id="FolderItem.permissionDenied">
        <source>“%1” cannot be looked at: permission denied.</source>
        <translation>「%1」を調べる権限がありません。</translation>
    </message>
    <message id="FolderItem.linkLoop">
        <source>“%1” is a loop of symbolic links.</source>
        <translation>「%1」はシンボリックリンクのループになっています。</translation>
    </message>
    <message id="FolderItem.nameTooLong">
        <source>“%1”: the name is too long.</source>
        <translation>「%1」は名前が長すぎます。</translation>
    </message>
    <message id="FolderItem.otherError">
        <source>“%1” cannot be looked at (%2).</source>
        <translation>「%1」を調べられません（%2）。</translation>
    </message>
    <message id="Intake.couldNotList">
        <source>list every item</source>
        <translation>すべての項目を一覧に登録する</translation>
    </message>
    <message id="Intake.andMore">
        <source>…and %1 more.</source>
        <translation>…ほか %1 件。</translation>
    </message>
    <message id="Globals.kAboutText">
        <source></source>
        <translation>【用途】写真画像ファイルなどに記録された Exif 詳細データの「日付と時刻」を変更します。
【動作環境】macOS 10.10 以降</translation>
    </message>
    <message id="Globals.kHowToClose">
        <source></source>
        <translation>（「どこかをクリック」でこのウィンドウを閉じます）</translation>
    </message>
    <message id="Globals.kUsageText">
        <source></source>
        <translation>【目的】デジタルカメラの設定ミスで誤った時刻が記録された写真の、日付と時刻を修正します。

【使い方】
1. Exif の日付と時刻を変更するには、目的のファイルをドラッグ＆ドロップします。ドロップはウィンドウ内のどこでも構いません。複数のファイルに対応しています。フォルダの階層構造には対応していませんが、フォルダそのものの日付と時刻は変更できます。下部のチェックボックスをチェックすると、ドロップしたものの中から静止画ファイルだけを一覧に登録できます。
2. 次に、基準にする日付と時刻の種類を選びます。各ファイルの該当する値が基準値になります。
3. 加算値はすべてに共通です。異なる値にしたい場合は個別に処理してください。
4. 下の表で選択している行のファイルについて、変更予定値を表示します。この部分は変更できないので、加算値で調整してください。また、選択したファイルの画像が左上に表示されます。
5. 下の表の各チェックボックスを操作して、書き込む種類を選びます。上端と左端は一括選択用です。
6. 右上の実行ボタンをクリックすると、ファイルに直接書き込みます。
7. 一つのファイルには同じ値が書き込まれるので、異なる値を使いたい場合は、表のチェックを使って何回かに分けて実行してください。
8. このアプリケーション（Finder のアイコンまたは Dock のアイコン）に複数のファイルをドラッグ＆ドロップして起動することもできます。

【注意事項】
1. ドラッグ＆ドロップは毎回新たに登録され、追加で登録することはできません。つまり、同じフォルダにない複数のファイルを同時に一覧にすることはできません。
2. 複数のウィンドウには対応していないので、閉じて終了してください。使うときは改めて起動してください。
3. 1 か月を超えるずれを修正するには、年と月をゼロにして、日数と時間を入力してください。たとえば 2 か月なら 60 日、1 年なら 365 日と入力し、目標値を見ながら微調整します。そうすれば、同じずれのある多数のファイルの日付と時刻を正しく変更できます。同じ日のファイルが複数ある場合は年と月を入力しても安全なので、この入力欄を残しました。トラブルを避けるため、初期状態では年と月を入力できないようにしています。</translation>
    </message>
    <message id="Globals.kBaseGroupCap">
        <source></source>
        <translation>基準とする日時</translation>
    </message>
    <message id="Globals.kBaseKind1">
        <source></source>
        <translation>ファイル作成日</translation>
    </message>
    <message id="Globals.kBaseKind2">
        <source></source>
        <translation>ファイル変更日</translation>
    </message>
    <message id="Globals.kBaseKind3">
        <source></source>
        <translation>Exif 画像変更日</translation>
    </message>
    <message id="Globals.kBaseKind4">
        <source></source>
        <translation>Exif 撮影日</translation>
    </message>
    <message id="Globals.kBaseKind5">
        <source></source>
        <translation>Exif デジタル化日</translation>
    </message>
    <message id="Globals.kExecuteBtnCap">
        <source></source>
        <translation>日時
変更
実行</translation>
    </message>
    <message id="Globals.kAddGroupCap">
        <source></source>
        <translation>加算値</translation>
    </message>
    <message id="Globals.kClearBtnCap">
        <source></source>
        <translation>クリア</translation>
    </message>
    <message id="Globals.kAddValueCheck">
        <source></source>
        <translation>年と月の入力を有効にする</translation>
    </message>
    <message id="Globals.kTxY">
        <source></source>
        <translation>年</translation>
    </message>
    <message id="Globals.kTxM">
        <source></source>
        <translation>月</translation>
    </message>
    <message id="Globals.kTxD">
        <source></source>
        <translation>日</translation>
    </message>
    <message id="Globals.kTxHour">
        <source></source>
        <translation>時</translation>
    </message>
    <message id="Globals.kTxMin">
        <source></source>
        <translation>分</translation>
    </message>
    <message id="Globals.kTxSec">
        <source></source>
        <translation>秒</translation>
    </message>
    <message id="Globals.kAimGroupCap">
        <source></source>
        <translation>変更予定値（下の表で選択している行の目標値）</translation>
    </message>
    <message id="Globals.kListHeaderInitValue">
        <source></source>
        <translation>全データ&#9;この列すべて&#9;この列すべて&#9;この列すべて&#9;この列すべて&#9;この列すべて</translation>
    </message>
    <message id="Globals.kListInitValue">
        <source></source>
        <translation>ファイル名&#9;ファイル作成日&#9;ファイル変更日&#9;Exif 画像変更日&#9;Exif 撮影日&#9;Exif デジタル化日</translation>
    </message>
    <message id="Globals.kOnlyPictCheck">
        <source></source>
        <translation>ドラッグ＆ドロップのとき、静止画ファイルだけを表に登録する</translation>
    </message>
</context>
</TS>
