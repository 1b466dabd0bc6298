#include "stores/Schema.h"

QString NameBefore(const QString &file)
{
    return file + QStringLiteral(".before");
}

const QStringList &GroupColumns()
{
    static const QStringList columns{Field::IdVit, Field::ParentIdVit, Field::NameVitVie, Field::NameVitPal,
                                     Field::NameVitEng};
    return columns;
}

const QStringList &TextColumns()
{
    static const QStringList columns = QStringList{Field::IdVit,      Field::IdVic,      Field::NumberVic,
                                                   Field::NameVicVie, Field::NameVicPal, Field::NameVicEng} +
                                       PageColumns();
    return columns;
}

const QStringList &PageColumns()
{
    static const QStringList columns{Field::ContentVicPal, Field::ContentVicEng, Field::ContentVicVie,
                                     Field::ContentVicPalVie};
    return columns;
}

const QStringList &SourceColumns()
{
    static const QStringList columns{Field::IdVic, Field::IdSource};
    return columns;
}

const QStringList &ListColumns()
{
    static const QStringList columns{Field::NikSut, Field::NicSut, Field::NameSutVie, Field::NameSutPal,
                                     Field::NameSutEng};
    return columns;
}

QString ContentColumn(int mode)
{
    switch (mode) {
    case PageMode::Pali:
        return Field::ContentVicPal;
    case PageMode::Vietnamese:
        return Field::ContentVicVie;
    case PageMode::English:
        return Field::ContentVicEng;
    case PageMode::Parallel:
        return Field::ContentVicPalVie;
    default:
        return {};
    }
}
