#include "toolkit/browser/EarlyCalls.h"

#include <gmock/gmock.h>

TEST(EarlyCalls, AreTakenFromLinksAndFramedPagesInAnyWriting)
{
    const std::pair<QByteArray, QByteArray> rows[]{
        {"<head><link rel=preconnect href=//a>", "<head><meta rel=preconnect href=//a>"},
        {"<LINK\nrel='x'><Link/rel=x><link>", "<meta\nrel='x'><meta/rel=x><meta>"},
        {"<svg><link rel=preconnect></svg", "<svg><meta rel=preconnect></svg"},
        {"<linked>link < link</link><link", "<linked>link < link</link><link"}, // no tags of that name
        {"<iframe srcdoc='&lt;link>'>", "<iframe srcdo-='&lt;link>'>"},
        {"<iframe title=\">\"SrcDoc =x/srcdoc>", "<iframe title=\">\"SrcDo- =x/srcdo->"},
        {"<p>srcdoc = frame", "<p>srcdoc = frame"},
        {"\xFF\xFE<\0l\0", "\xEF\xBB\xBF\xFF\xFE<"}, // UTF-16
        {"<", "<"},
        {"", ""},
    };
    for (const auto &[page, quiet] : rows)
        EXPECT_EQ(WithoutEarlyCalls(page), quiet) << page.constData();
}
