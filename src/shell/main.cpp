#include "shell/App.h"
#include "shell/Translations.h"
#include "shell/Window1.h"

int main(int argc, char** argv)
{
    App app(argc, argv);
    installTranslations(app);  // before any caption is looked up
    if (!app.start(app.launchDocuments()))
        return 0;  // the running copy has taken the documents
    const int status = app.exec();
    if (Window1::exists())
        delete Window1::instance();
    return status;
}
