#pragma once

#include <QIcon>
#include <QMap>
#include <QObject>
#include <QString>

#include <functional>

class TcxGridDBTableView;

/// A column of a data-bound grid: a field of the dataset under a caption. Joins its view when it is made and is owned
/// by it, so that a window's description can list the columns as the view's children.
class TcxGridDBColumn : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
    Q_PROPERTY(QString FieldName READ FieldName WRITE SetFieldName)
    Q_PROPERTY(int Width READ Width WRITE SetWidth)
    Q_PROPERTY(bool Visible READ Visible WRITE SetVisible)
    Q_PROPERTY(bool Fixed READ Fixed WRITE SetFixed)
public:
    explicit TcxGridDBColumn(TcxGridDBTableView *view);

    /// Where it is empty, the header shows the field's label.
    const QString &Caption() const { return m_caption; }
    void SetCaption(const QString &caption);
    const QString &FieldName() const { return m_fieldName; }
    void SetFieldName(const QString &name);
    /// In pixels, and the column's share of the grid's width.
    int Width() const { return m_width; }
    void SetWidth(int width);
    bool Visible() const { return m_visible; }
    void SetVisible(bool visible);
    /// Takes no part in the sharing of the grid's width: it keeps its own.
    bool Fixed() const { return m_isFixed; }
    void SetFixed(bool fixed);

    /// With an image for any value the column shows images in place of texts, none for the other values, and its header
    /// shows no label of the field.
    void SetImage(int value, const QIcon &image) { m_images.insert(value, image); }
    const QMap<int, QIcon> &Images() const { return m_images; }
    /// Words for the image of a value, for those who can't see it, and for what has no image; shown as a hint, too.
    std::function<QString(int value)> OnDescribe;

private:
    friend class TcxGridDBTableView;
    TcxGridDBTableView &m_view;
    QString m_caption, m_fieldName;
    int m_width = 64;
    bool m_visible = true;
    bool m_isFixed = false;
    QMap<int, QIcon> m_images;
};
