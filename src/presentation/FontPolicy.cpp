#include "presentation/FontPolicy.h"

#include "presentation/FontRules.h"
#include "toolkit/controls/BarManager.h"
#include "toolkit/controls/CxLabel.h"
#include "toolkit/controls/Kinds.h"

#include <QFont>
#include <QHeaderView>
#include <QTableView>

namespace {

constexpr int baseSize = 10; // points

QList<QByteArray> ClassNames(const QObject &object)
{
    QList<QByteArray> names;
    for (const QMetaObject *one = object.metaObject(); one; one = one->superClass())
        names.append(one->className());
    return names;
}

QFont FontBy(const FontRule &rule, const QFont &base, const QFont &designed)
{
    QFont font = rule.start == FontStart::Base ? base : designed;
    if (rule.start == FontStart::BaseName)
        font.setFamily(base.family());
    if (const int size = rule.Size(base.pointSize()))
        font.setPointSize(size);
    if (rule.addsItalic)
        font.setItalic(true);
    if (rule.smoothsAgain)
        SetFontQuality(font);
    return font;
}

void ColourText(QWidget &control, Colour colour)
{
    QPalette palette = control.palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        for (const auto role : {QPalette::WindowText, QPalette::Text})
            palette.setColor(group, role, QColor(ColorToHtml(colour)));
    control.setPalette(palette);
}

void ApplyToWidget(QWidget &control, const FontRule &rule, const QFont &base)
{
    const QFont font = FontBy(rule, base, control.font());
    if (rule.place == FontPlace::Captions) {
        if (auto *layout = qobject_cast<TdxLayoutControl *>(&control))
            layout->SetCaptionFont(font);
        return;
    }
    control.setFont(font);
    if (auto *table = qobject_cast<QTableView *>(&control); table && rule.place == FontPlace::Columns)
        table->horizontalHeader()->setFont(font);
    if (rule.textColour)
        ColourText(control, *rule.textColour);
    if (auto *label = qobject_cast<TcxLabel *>(&control); label && rule.effectDepth > 0)
        label->SetShadow(rule.effectDepth, Qt::white);
}

} // namespace

void ApplyFontPolicy(QObject &component)
{
    QFont base(QStringLiteral("Segoe UI"), baseSize);
    BaseFontName = base.family();
    BaseFontSize = base.pointSize();
    SetFontQuality(base);
    const int tag = component.property("Tag").toInt();
    const auto rule = FindFontRule(FontKind(ClassNames(component)), tag);
    if (!rule)
        return;
    if (auto *manager = qobject_cast<TdxBarManager *>(&component))
        manager->SetFont(FontBy(*rule, base, base));
    else if (component.isWidgetType())
        ApplyToWidget(static_cast<QWidget &>(component), *rule, base);
}

void SetFontQuality(QFont &font)
{
    font.setStyleStrategy(QFont::PreferAntialias);
}

void SetFontQuality(QWidget &control)
{
    QFont font = control.font();
    SetFontQuality(font);
    control.setFont(font);
}
