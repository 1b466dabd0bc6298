#pragma once

#include <QList>
#include <QString>

enum class EnglishForm {
    Itself,
    Plural,
    Possessive,
    ThirdPerson,
    Past,
    PastParticiple,
    Ing,
    Comparative,
    Superlative,
    Adverb,
    Contraction
};

/// A headword under which a dictionary may have an English form.
struct EnglishReading
{
    QString head;
    EnglishForm term = EnglishForm::Itself;
};

/// The headwords that a form in lower case may stand under, the most likely first: itself, irregular forms, the regular
/// endings with their changes of spelling.
QList<EnglishReading> EnglishReadings(const QString &form);

/// What the grammar calls the form, in a language of the interface; empty for the headword itself.
QString EnglishTerm(EnglishForm form, int language);
