#pragma once

/// The text helpers, by the name under which they are known.

#include "base/PlainText.h"
#include "marks/ConfirmDelete.h"
#include "marks/HtmlToPlainText.h"
