#pragma once

#include "base/Colour.h"

#include <QFont>
#include <QObject>

/// The part of the look that all windows share, as named components of a module.

/// The captions of one kind of layout element.
class TdxLayoutCaptionOptions : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QFont Font READ Font WRITE SetFont NOTIFY Changed)
    Q_PROPERTY(bool UseDefaultFont MEMBER m_useDefaultFont)
public:
    using QObject::QObject;
    const QFont &Font() const { return m_font; }
    void SetFont(const QFont &font);

signals:
    void Changed();

private:
    QFont m_font;
    bool m_useDefaultFont = true;
};

/// A list of layout looks; they are its children.
class TdxLayoutLookAndFeelList : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
};

/// Spacing, skin and caption fonts of a layout.
class TdxLayoutSkinLookAndFeel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int ControlOffsetHorz MEMBER m_controlOffsetHorz)
    Q_PROPERTY(int ControlOffsetVert MEMBER m_controlOffsetVert)
    Q_PROPERTY(int ItemOffset MEMBER m_itemOffset)
    Q_PROPERTY(int RootItemsAreaOffsetHorz MEMBER m_rootItemsAreaOffsetHorz)
    Q_PROPERTY(int RootItemsAreaOffsetVert MEMBER m_rootItemsAreaOffsetVert)
    Q_PROPERTY(bool NativeStyle MEMBER m_nativeStyle)
    Q_PROPERTY(QString SkinName MEMBER m_skinName)
public:
    explicit TdxLayoutSkinLookAndFeel(QObject *parent = nullptr);
    ~TdxLayoutSkinLookAndFeel() override;

    TdxLayoutCaptionOptions &GroupOptions() { return *m_groupOptions; }
    TdxLayoutCaptionOptions &ItemOptions() { return *m_itemOptions; }

    /// The look that layout items use: the first one created; null if there is none.
    static TdxLayoutSkinLookAndFeel *InForce();

private:
    TdxLayoutCaptionOptions *m_groupOptions;
    TdxLayoutCaptionOptions *m_itemOptions;
    int m_controlOffsetHorz = 0;
    int m_controlOffsetVert = 0;
    int m_itemOffset = 0;
    int m_rootItemsAreaOffsetHorz = 0;
    int m_rootItemsAreaOffsetVert = 0;
    bool m_nativeStyle = true;
    QString m_skinName;
};

/// How hints look.
class TcxHintStyleController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString HintStyleClassName MEMBER m_hintStyleClassName)
    Q_PROPERTY(QString CallOutPosition MEMBER m_callOutPosition)
    Q_PROPERTY(bool Rounded MEMBER m_isRounded)
    Q_PROPERTY(QFont CaptionFont MEMBER m_captionFont)
    Q_PROPERTY(QFont Font MEMBER m_font)
public:
    using QObject::QObject;

private:
    QString m_hintStyleClassName;
    QString m_callOutPosition;
    bool m_isRounded = false;
    QFont m_captionFont;
    QFont m_font;
};

/// The default skin of controls.
class TcxLookAndFeelController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString SkinName MEMBER m_skinName)
public:
    using QObject::QObject;

private:
    QString m_skinName;
};

/// A style that grids can share.
class TcxStyle : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint32 TextColor MEMBER textColor)
    Q_PROPERTY(quint32 Color MEMBER color)
    Q_PROPERTY(QFont Font MEMBER font)
public:
    static constexpr Colour Default = 0x20000000; ///< the grid's own colour
    using QObject::QObject;

    Colour textColor = Default;
    Colour color = Default;
    QFont font;
};

/// A sheet of styles for cards; a built-in one keeps its defaults.
class TcxCardsStyleSheet : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool BuiltIn MEMBER m_isBuiltIn)
public:
    using QObject::QObject;

private:
    bool m_isBuiltIn = true;
};

/// Styles and sheets; they are its children.
class TcxStyleRepository : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
};
