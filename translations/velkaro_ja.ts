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
    <message id="Action.add the dropped files">
        <source></source>
        <translation>ドロップされたファイルを追加する</translation>
    </message>
    <message id="Action.add the file handed over by the desktop">
        <source></source>
        <translation>デスクトップから渡されたファイルを追加する</translation>
    </message>
    <message id="Action.apply the select-all tick">
        <source></source>
        <translation>全選択のチェックを反映する</translation>
    </message>
    <message id="Action.apply the tick">
        <source></source>
        <translation>チェックを反映する</translation>
    </message>
    <message id="Action.apply the tick to the row">
        <source></source>
        <translation>行にチェックを反映する</translation>
    </message>
    <message id="Action.bring the addition value up to date">
        <source></source>
        <translation>加算値を更新する</translation>
    </message>
    <message id="Action.carry out the edit command">
        <source></source>
        <translation>編集コマンドを実行する</translation>
    </message>
    <message id="Action.change the dates in the files">
        <source></source>
        <translation>ファイルの日付を変更する</translation>
    </message>
    <message id="Action.clear the addition values">
        <source></source>
        <translation>加算値を消去する</translation>
    </message>
    <message id="Action.hide the drop frame">
        <source></source>
        <translation>ドロップ枠を隠す</translation>
    </message>
    <message id="Action.hide the file name">
        <source></source>
        <translation>ファイル名を隠す</translation>
    </message>
    <message id="Action.keep only still images in the list">
        <source></source>
        <translation>表に静止画だけを残す</translation>
    </message>
    <message id="Action.open the About window">
        <source></source>
        <translation>このアプリケーションについてのウィンドウを開く</translation>
    </message>
    <message id="Action.quit">
        <source></source>
        <translation>終了する</translation>
    </message>
    <message id="Action.set up the addition values">
        <source></source>
        <translation>加算値を準備する</translation>
    </message>
    <message id="Action.set up the reference dates">
        <source></source>
        <translation>基準日を準備する</translation>
    </message>
    <message id="Action.show the drop frame">
        <source></source>
        <translation>ドロップ枠を表示する</translation>
    </message>
    <message id="Action.show the file name under the pointer">
        <source></source>
        <translation>ポインタの下のファイル名を表示する</translation>
    </message>
    <message id="Action.show the program&#x27;s name">
        <source></source>
        <translation>プログラム名を表示する</translation>
    </message>
    <message id="Action.show the scheduled value of the selected file">
        <source></source>
        <translation>選択したファイルの変更予定値を表示する</translation>
    </message>
    <message id="Action.show the version">
        <source></source>
        <translation>バージョンを表示する</translation>
    </message>
    <message id="Action.sort the opened files">
        <source></source>
        <translation>開いたファイルを並べ替える</translation>
    </message>
    <message id="Action.switch the reference date">
        <source></source>
        <translation>基準日を切り替える</translation>
    </message>
    <message id="Action.switch the still-image filter">
        <source></source>
        <translation>静止画フィルタを切り替える</translation>
    </message>
    <message id="Action.switch year and month input">
        <source></source>
        <translation>年月の入力を切り替える</translation>
    </message>
    <message id="Action.take the addition value as typed">
        <source></source>
        <translation>入力された加算値を受け取る</translation>
    </message>
    <message id="Action.take the click in the list">
        <source></source>
        <translation>表のクリックを受け取る</translation>
    </message>
    <message id="Action.take the click on the select-all boxes">
        <source></source>
        <translation>全選択ボックスのクリックを受け取る</translation>
    </message>
    <message id="Action.take the click on the select-all row">
        <source></source>
        <translation>全選択行のクリックを受け取る</translation>
    </message>
    <message id="Action.take the key pressed in the addition value">
        <source></source>
        <translation>加算値で押されたキーを受け取る</translation>
    </message>
    <message id="FolderItem.isFolder">
        <source></source>
        <translation>%1 はファイルではなくフォルダです。</translation>
    </message>
    <message id="FolderItem.mayBeGone">
        <source></source>
        <translation>。移動または削除された可能性があります。</translation>
    </message>
    <message id="FolderItem.mayNotChange">
        <source></source>
        <translation>。変更する権限がありません。</translation>
    </message>
    <message id="FolderItem.mayNotRead">
        <source></source>
        <translation>。読み込む権限がありません。</translation>
    </message>
    <message id="FolderItem.notAFile">
        <source></source>
        <translation>%1 は通常のファイルではありません。</translation>
    </message>
    <message id="FolderItem.notOpenedForWriting">
        <source></source>
        <translation>%1 を書き込み用に開けませんでした</translation>
    </message>
    <message id="FolderItem.notRead">
        <source></source>
        <translation>%1 を読み込めませんでした</translation>
    </message>
    <message id="FolderItem.readOnlyDisk">
        <source></source>
        <translation>。書き込みできないディスクにあります。</translation>
    </message>
    <message id="FolderItem.systemSays">
        <source></source>
        <translation>（%1）。</translation>
    </message>
    <message id="Report.busy">
        <source></source>
        <translation>別のプログラムが使用中です</translation>
    </message>
    <message id="Report.causeUnknown">
        <source></source>
        <translation>原因は分かりません。</translation>
    </message>
    <message id="Report.columnCount">
        <source></source>
        <translation>表の列は 1 から 64 までです（%1 ではありません）。</translation>
    </message>
    <message id="Report.couldNot">
        <source></source>
        <translation>Velkaro は%1ことができませんでした。</translation>
    </message>
    <message id="Report.diskFull">
        <source></source>
        <translation>ディスクがいっぱいです</translation>
    </message>
    <message id="Report.gone">
        <source></source>
        <translation>もうそこにありません。移動または削除された可能性があります</translation>
    </message>
    <message id="Report.incompleteDate">
        <source></source>
        <translation>表の %2 行目の日付 %1 は不完全です。2021:05:06 07:08:09 のように日と時刻が必要です。</translation>
    </message>
    <message id="Report.isFolder">
        <source></source>
        <translation>ファイルではなくフォルダです</translation>
    </message>
    <message id="Report.nil">
        <source></source>
        <translation>必要なものがもうありません。</translation>
    </message>
    <message id="Report.noColumn">
        <source></source>
        <translation>表に %1 列目はありません。</translation>
    </message>
    <message id="Report.noCreationTime">
        <source></source>
        <translation>このシステムではファイルの作成日を設定できません</translation>
    </message>
    <message id="Report.noFileGiven">
        <source></source>
        <translation>ファイルが指定されていません。</translation>
    </message>
    <message id="Report.noMemory">
        <source></source>
        <translation>メモリが足りませんでした。</translation>
    </message>
    <message id="Report.noPermission">
        <source></source>
        <translation>変更する権限がありません</translation>
    </message>
    <message id="Report.noRowChosen">
        <source></source>
        <translation>表の行が選択されていません。</translation>
    </message>
    <message id="Report.notAFile">
        <source></source>
        <translation>通常のファイルではありません</translation>
    </message>
    <message id="Report.outOfBounds">
        <source></source>
        <translation>一覧の終わりより先を探しました。</translation>
    </message>
    <message id="Report.pastBlock">
        <source></source>
        <translation>%1 バイトのブロックの終わりを越えて読み書きしようとしました。</translation>
    </message>
    <message id="Report.pastEnd">
        <source></source>
        <translation>日付の位置より前でファイルが終わっています</translation>
    </message>
    <message id="Report.readOnlyDisk">
        <source></source>
        <translation>書き込みできないディスクにあります</translation>
    </message>
    <message id="Report.rowGone">
        <source></source>
        <translation>%1 行目はもう表にありません。</translation>
    </message>
    <message id="Report.shortWrite">
        <source></source>
        <translation>システムは日付の一部しか書き込みませんでした</translation>
    </message>
    <message id="Report.systemError">
        <source></source>
        <translation>システムの報告：%1</translation>
    </message>
    <message id="Run.aimNoExifDate">
        <source></source>
        <translation>変更予定値 %1 は Exif の日付として書き込めません</translation>
    </message>
    <message id="Run.andMore">
        <source></source>
        <translation>ほか %1 件。</translation>
    </message>
    <message id="Run.changed">
        <source></source>
        <translation>登録後に変更されています。%1 バイト目に %2 がもうありません</translation>
    </message>
    <message id="Run.checkFailed">
        <source></source>
        <translation>何も書き込んでいません。次の日付は安全に変更できません。チェックを外すか、ファイルをもう一度ドロップしてから、もう一度ボタンを押してください：</translation>
    </message>
    <message id="Run.creationsKept">
        <source></source>
        <translation>このシステムでは設定できないため、そのまま残るチェック済みの作成日：%1 件。</translation>
    </message>
    <message id="Run.failedDate">
        <source></source>
        <translation>%1、%2：%3。</translation>
    </message>
    <message id="Run.noDateInCell">
        <source></source>
        <translation>表のこのセルに Exif の日付がありません</translation>
    </message>
    <message id="Run.noFile">
        <source></source>
        <translation>この行のファイルが分かりません</translation>
    </message>
    <message id="Run.notListed">
        <source></source>
        <translation>ここに登録されたファイルが分かりません</translation>
    </message>
    <message id="Run.notedUnknown">
        <source></source>
        <translation>登録時の変更日が分からないため、元に戻せません</translation>
    </message>
    <message id="Run.nowFolder">
        <source></source>
        <translation>フォルダに変わっています</translation>
    </message>
    <message id="Run.nowLink">
        <source></source>
        <translation>別のファイルへのリンクに変わっています</translation>
    </message>
    <message id="Run.pastEnd">
        <source></source>
        <translation>この日付の位置（%1 バイト目）より前でファイルが終わっています</translation>
    </message>
    <message id="Run.placeUnknown">
        <source></source>
        <translation>この日付のファイル内の位置が分かりません</translation>
    </message>
    <message id="Run.replaced">
        <source></source>
        <translation>登録後に別のファイルに置き換えられています</translation>
    </message>
    <message id="Run.row">
        <source></source>
        <translation>%1 行目</translation>
    </message>
    <message id="Run.stopped">
        <source></source>
        <translation>%1 で止まりました：%2。それより前の日付はチェックどおりに変更済みです。この日付とそれ以降は変更されていません。</translation>
    </message>
    <message id="Run.summary">
        <source></source>
        <translation>その場で上書きする日付：%2 個のファイルの %1 件。</translation>
    </message>
    <message id="Run.whereDate">
        <source></source>
        <translation>%1、%2</translation>
    </message>
    <message id="Action.name the files that could not be listed">
        <source></source>
        <translation>登録できなかったファイルを示す</translation>
    </message>
    <message id="Action.undo the last run">
        <source></source>
        <translation>最後の実行を取り消す</translation>
    </message>
    <message id="Action.show the run history">
        <source></source>
        <translation>実行履歴を表示する</translation>
    </message>
    <message id="Action.look for an interrupted run">
        <source></source>
        <translation>中断された実行を探す</translation>
    </message>
    <message id="Journal.cannotWrite">
        <source></source>
        <translation>実行の記録を “%1” に書き込めません：%2</translation>
    </message>
    <message id="Journal.corrupt">
        <source></source>
        <translation>内容が壊れています</translation>
    </message>
    <message id="Journal.cut">
        <source></source>
        <translation>途中で切れています</translation>
    </message>
    <message id="Journal.newer">
        <source></source>
        <translation>このプログラムの新しい版で書かれています</translation>
    </message>
    <message id="Journal.notJournal">
        <source></source>
        <translation>このプログラムの実行記録ではありません</translation>
    </message>
    <message id="Journal.dates">
        <source></source>
        <translation>日付</translation>
    </message>
    <message id="Journal.diskFull">
        <source></source>
        <translation>ディスクがいっぱいです</translation>
    </message>
    <message id="Journal.fileWhy">
        <source></source>
        <translation>%1：%2。</translation>
    </message>
    <message id="Journal.files">
        <source></source>
        <translation>ファイル</translation>
    </message>
    <message id="Journal.finish">
        <source></source>
        <translation>実行を最後まで行う</translation>
    </message>
    <message id="Journal.finished">
        <source></source>
        <translation>%1 を最後まで行いました。</translation>
    </message>
    <message id="Journal.historyTitle">
        <source></source>
        <translation>実行履歴</translation>
    </message>
    <message id="Journal.interrupted">
        <source></source>
        <translation>%1 は中断されました。%2 個のファイルが変更されています。</translation>
    </message>
    <message id="Journal.leave">
        <source></source>
        <translation>そのままにする</translation>
    </message>
    <message id="Journal.noPermission">
        <source></source>
        <translation>そこに書き込む権限がありません</translation>
    </message>
    <message id="Journal.notOurs">
        <source></source>
        <translation>あなたのフォルダではありません</translation>
    </message>
    <message id="Journal.nothingToUndo">
        <source></source>
        <translation>取り消せる実行はありません。</translation>
    </message>
    <message id="Journal.offset">
        <source></source>
        <translation>加算値</translation>
    </message>
    <message id="Journal.offsetWas">
        <source></source>
        <translation>加算値は %1 でした。</translation>
    </message>
    <message id="Journal.partly">
        <source></source>
        <translation>元に戻す、または最後まで行うことができなかったファイルがあります：</translation>
    </message>
    <message id="Journal.place">
        <source></source>
        <translation>%1、%2 バイト目</translation>
    </message>
    <message id="Journal.placeNotLanded">
        <source></source>
        <translation>%1：書き込みましたが、読み返すと異なります。</translation>
    </message>
    <message id="Journal.placeWhy">
        <source></source>
        <translation>%1：%2。</translation>
    </message>
    <message id="Journal.readOnly">
        <source></source>
        <translation>ディスクに書き込めません</translation>
    </message>
    <message id="Journal.refused">
        <source></source>
        <translation>何も書き込んでいません。次のファイルは実行後の内容ではなくなっています。</translation>
    </message>
    <message id="Journal.placeNeither">
        <source></source>
        <translation>%1：実行前の内容でも実行で書き込んだ内容でもありません。</translation>
    </message>
    <message id="Journal.notSameFile">
        <source></source>
        <translation>%1：実行で書き込んだファイルではなくなっています（置き換えられたか、サイズが変わりました）。</translation>
    </message>
    <message id="Journal.runOf">
        <source></source>
        <translation>%1 の %2 個のファイルの実行</translation>
    </message>
    <message id="Journal.state">
        <source></source>
        <translation>状態</translation>
    </message>
    <message id="Journal.stateDone">
        <source></source>
        <translation>完了</translation>
    </message>
    <message id="Journal.stateInterrupted">
        <source></source>
        <translation>中断</translation>
    </message>
    <message id="Journal.stateUndone">
        <source></source>
        <translation>取り消し済み</translation>
    </message>
    <message id="Journal.stateUnreadable">
        <source></source>
        <translation>読めません：%1</translation>
    </message>
    <message id="Journal.timeNotLanded">
        <source></source>
        <translation>%1：ファイルの日時を設定しましたが、読み返すと %2 です。</translation>
    </message>
    <message id="Journal.undoDone">
        <source></source>
        <translation>行った変更を取り消す</translation>
    </message>
    <message id="Journal.undoQuestion">
        <source></source>
        <translation>%1 を取り消しますか？</translation>
    </message>
    <message id="Journal.undone">
        <source></source>
        <translation>%1 のすべてのファイルを実行前の状態に戻しました。</translation>
    </message>
    <message id="Journal.unreadable">
        <source></source>
        <translation>最後の実行の記録 “%1” を読めません：%2。</translation>
    </message>
    <message id="Journal.unreadableAtStart">
        <source></source>
        <translation>実行の記録 “%1” を読めません：%2。</translation>
    </message>
    <message id="Journal.when">
        <source></source>
        <translation>日時</translation>
    </message>
    <message id="Run.noJournal">
        <source></source>
        <translation>何も書き込んでいません：%1。</translation>
    </message>
    <message id="Run.notClosed">
        <source></source>
        <translation>すべての日付を変更しましたが、実行の終わりを記録できませんでした：%1。次の起動時にこの実行の取り消しを尋ねます。</translation>
    </message>
    <message id="Run.notLanded">
        <source></source>
        <translation>%1 バイト目に書き込みましたが、読み返すと “%2” です</translation>
    </message>
    <message id="Run.timeNotLanded">
        <source></source>
        <translation>%1 に設定しましたが、読み返すと %2 です</translation>
    </message>
    <message id="Copy.differs">
        <source></source>
        <translation>%1 を示しており、表の日付とは別の時刻です</translation>
    </message>
    <message id="Copy.notADate">
        <source></source>
        <translation>「%1」はこの形式の日付ではありません</translation>
    </message>
    <message id="Copy.xmpTooLarge">
        <source></source>
        <translation>XMP パケットが %1 MiB を超えています</translation>
    </message>
    <message id="Copy.xmpBadUtf8">
        <source></source>
        <translation>XMP パケットが正しい UTF-8 ではありません</translation>
    </message>
    <message id="Copy.xmpNotWellFormed">
        <source></source>
        <translation>XMP パケットが整形式ではありません</translation>
    </message>
    <message id="Copy.xmpAt">
        <source></source>
        <translation>%1 バイト目の XMP</translation>
    </message>
    <message id="Copy.sidecarLink">
        <source></source>
        <translation>リンクです</translation>
    </message>
    <message id="Copy.sidecarReadOnly">
        <source></source>
        <translation>読み取り専用です</translation>
    </message>
    <message id="Copy.sidecarFolder">
        <source></source>
        <translation>フォルダです</translation>
    </message>
    <message id="Run.copies">
        <source></source>
        <translation>これらの日付とともに動く XMP・IPTC・他の Exif ディレクトリ内のコピー：%1 件。</translation>
    </message>
    <message id="Run.copiesKept">
        <source></source>
        <translation>異なる、または書き込めないため、そのまま残るコピー：%1 件。</translation>
    </message>
    <message id="Menu.keepCopies">
        <source></source>
        <translation>XMP と IPTC のコピーも合わせて変更</translation>
    </message>
    <message id="Menu.file">
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message id="Menu.addFiles">
        <source>Add Files…</source>
        <translation>ファイルを追加…</translation>
    </message>
    <message id="Menu.undoLastRun">
        <source>Undo Last Run…</source>
        <translation>前回の実行を取り消す…</translation>
    </message>
    <message id="Menu.runHistory">
        <source>Run History…</source>
        <translation>実行の履歴…</translation>
    </message>
    <message id="Menu.help">
        <source>&amp;Help</source>
        <translation>ヘルプ(&amp;H)</translation>
    </message>
    <message id="Menu.about">
        <source>About Velkaro</source>
        <translation>Velkaro について</translation>
    </message>
    <message id="Menu.offsetFromKnownTime">
        <source>Offset from a Known Time…</source>
        <translation>既知の日時から追加値を求める…</translation>
    </message>
    <message id="AddFiles.title">
        <source>Add Files</source>
        <translation>ファイルを追加</translation>
    </message>
    <message id="AddFiles.photos">
        <source>Photos (%1)</source>
        <translation>写真 (%1)</translation>
    </message>
    <message id="AddFiles.all">
        <source>All files (*)</source>
        <translation>すべてのファイル (*)</translation>
    </message>
    <message id="KnownTime.title">
        <source>Offset from a Known Time</source>
        <translation>既知の日時から追加値を求める</translation>
    </message>
    <message id="KnownTime.question">
        <source>The true date and time of “%1”:
its reference date reads %2; the addition value becomes the difference.</source>
        <translation>「%1」の正しい日付と時刻：
基準の日時は %2 です。その差が追加値になります。</translation>
    </message>
    <message id="Action.add the chosen files">
        <source></source>
        <translation>選んだファイルを追加する</translation>
    </message>
    <message id="Action.offset from a known time">
        <source></source>
        <translation>既知の日時から追加値を求める</translation>
    </message>
</context>
</TS>
