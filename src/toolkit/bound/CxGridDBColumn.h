#pragma once

#include <QIcon>
#include <QMap>
#include <QObject>
#include <QString>

#include <functional>

class TcxGridDBTableView;

/// A column of a data-bound grid: a field of the dataset under a caption. It adds itself to its view, which owns it, so
/// that a .ui file can list the columns as the view's children.
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

    /// If it is empty, the header shows the field's label.
    const QString &Caption() const { return m_caption; }
    void SetCaption(const QString &caption);
    const QString &FieldName() const { return m_fieldName; }
    void SetFieldName(const QString &name);
    /// In pixels, and the column's share of the grid's width.
    int Width() const { return m_width; }
    void SetWidth(int width);
    bool Visible() const { return m_visible; }
    void SetVisible(bool visible);
    /// A fixed column keeps its width; the others share the rest of the grid's.
    bool Fixed() const { return m_isFixed; }
    void SetFixed(bool fixed);

    /// Once a value has an image, the column shows images instead of texts, nothing for values without one, and its
    /// header does not fall back to the field's label.
    void SetImage(int value, const QIcon &image) { m_images.insert(value, image); }
    const QMap<int, QIcon> &Images() const { return m_images; }
    /// The text for a value's image, and for a value without one: for screen readers, and as a hint.
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
