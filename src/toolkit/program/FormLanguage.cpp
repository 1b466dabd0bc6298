#include "toolkit/program/FormLanguage.h"

#include "presentation/languages/DKLang.h"
#include "toolkit/program/Guard.h"

#include <QWidget>

TDKLanguageController *AddFormTexts(QWidget &form)
{
    return new TDKLanguageController(&form, QStringLiteral(":/langdata/") + form.objectName());
}

TDKLanguageController *TranslateForm(QWidget &form)
{
    TDKLanguageController *controller = AddFormTexts(form);
    RunGuarded([controller] { controller->Loaded(); });
    return controller;
}
