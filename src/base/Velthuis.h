#pragma once

#include <QString>
#include <QStringView>

#include <optional>

/// Pali letters from the plain ones of the Velthuis scheme: "aa" is ā, ".t" is ṭ, "~n" is ñ, "\"n" is ṅ.

/// What the letters before the cursor become.
struct VelthuisStep
{
    QString typed;  ///< the two letters at the end that are taken away
    QString letter; ///< and the one that comes in their place
};

/// The step for a text that ends in the letter that was typed last; none if its end is no pair. `niggahita` is the
/// letter for ".m", ṁ or ṃ.
std::optional<VelthuisStep> VelthuisStepAt(QStringView text, QChar niggahita);
