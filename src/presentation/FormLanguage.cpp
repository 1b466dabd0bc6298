#include "presentation/FormLanguage.h"

#include "presentation/DKLang.h"
#include "toolkit/Guard.h"

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
