#include "toolkit/program/FormLanguage.h"

#include "presentation/languages/DKLang.h"
#include "toolkit/program/Guard.h"

#include <QWidget>

#include <utility>

TDKLanguageController *AddFormTexts(QWidget &form)
{
    return new TDKLanguageController(&form, QStringLiteral(":/langdata/") + form.objectName());
}

TDKLanguageController *TranslateForm(QWidget &form)
{
    static QString told; // the last report, until a window is read well
    TDKLanguageController *controller = AddFormTexts(form);
    RunGuarded([controller] {
        try {
            controller->Loaded();
            told.clear();
        } catch (const EDKLangError &error) {
            if (std::exchange(told, error.Text()) != error.Text())
                throw;
        }
    });
    return controller;
}
