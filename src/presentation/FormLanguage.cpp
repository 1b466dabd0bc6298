#include "presentation/FormLanguage.h"

#include "presentation/DKLang.h"
#include "toolkit/Guard.h"

#include <QWidget>

TDKLanguageController *TranslateForm(QWidget &form)
{
    auto *controller = new TDKLanguageController(&form, QStringLiteral(":/langdata/") + form.objectName());
    RunGuarded([controller] { controller->Loaded(); });
    return controller;
}
