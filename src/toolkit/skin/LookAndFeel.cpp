#include "toolkit/skin/LookAndFeel.h"

namespace {

TdxLayoutSkinLookAndFeel *lookInForce = nullptr;

} // namespace

void TdxLayoutCaptionOptions::SetFont(const QFont &font)
{
    m_useDefaultFont = false;
    m_font = font;
    emit Changed();
}

TdxLayoutSkinLookAndFeel::TdxLayoutSkinLookAndFeel(QObject *parent)
    : QObject(parent), m_groupOptions(new TdxLayoutCaptionOptions(this)),
      m_itemOptions(new TdxLayoutCaptionOptions(this))
{
    m_groupOptions->setObjectName(QStringLiteral("GroupOptions"));
    m_itemOptions->setObjectName(QStringLiteral("ItemOptions"));
    if (!lookInForce)
        lookInForce = this;
}

TdxLayoutSkinLookAndFeel::~TdxLayoutSkinLookAndFeel()
{
    if (lookInForce == this)
        lookInForce = nullptr;
}

TdxLayoutSkinLookAndFeel *TdxLayoutSkinLookAndFeel::InForce()
{
    return lookInForce;
}
