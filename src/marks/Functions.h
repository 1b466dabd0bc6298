#pragma once

/// The text helpers under their customary name.

#include "base/PlainText.h"
#include "marks/ConfirmDelete.h"
#include "marks/HtmlToPlainText.h"
