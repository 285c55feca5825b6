#include "shell/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace {

// What the last call installed, so that a second call replaces it.
std::unique_ptr<QTranslator> ownTable;
std::unique_ptr<QTranslator> qtTable;

}  // namespace

void installTranslations(QCoreApplication& app)
{
    Q_INIT_RESOURCE(velkaro_translations);
    for (auto* table : {&ownTable, &qtTable}) {
        if (*table)
            app.removeTranslator(table->get());
        table->reset();
    }

    // The desktop's language, through the default locale (which follows the system's
    // unless it was set).
    const QLocale locale;
    auto own = std::make_unique<QTranslator>();
    if (!own->load(locale, QStringLiteral("velkaro"), QStringLiteral("_"), QStringLiteral(":/i18n")))
        return;  // no table for that language: every caption keeps its default
    app.installTranslator(own.get());
    ownTable = std::move(own);

    // Qt's own texts (the buttons of the question, a field's context menu) in the same
    // language, where the system has them.
    auto qt = std::make_unique<QTranslator>();
    if (qt->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        app.installTranslator(qt.get());
        qtTable = std::move(qt);
    }
}
