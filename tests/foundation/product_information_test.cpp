// SPDX-License-Identifier: MIT
#include "zeltools/foundation/product_information.h"

#include "zeltools/foundation/application_product_name.h"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(ProductInformation, ABlockOfEightLines) {
    SetInternalProductName(u"Catalogue", 3, false);
    struct {
        ProductTextCallback product, licence;
        std::u16string end;
    } const rows[] = {
        {nullptr, nullptr, u"Catalogue 1.2\r\n64-bit version\r\nNo licence information\r\n"},
        {[] { return CXTString<char16_t>(u"Catalogue %s"); }, [] { return CXTString<char16_t>(u"Ana"); },
         u"Catalogue %s 1.2\r\n64-bit version\r\nAna\r\n"},
    };
    std::u16string const rule = std::u16string(42, u'-') + u"\r\n";
    std::u16string const head = rule + u"Product information\r\n" + rule;
    for (auto const& row : rows) {
        SetProductInformationCallbacks(row.product, row.licence);
        CXTString<char16_t> const block = BuildProductInformationText(u"1.2");
        std::u16string const text(static_cast<char16_t const*>(block));
        EXPECT_TRUE(text.starts_with(head));
        EXPECT_TRUE(text.ends_with(u" (110)\r\n" + row.end + rule));
        // The system's name, which stands between, is one line and not empty.
        EXPECT_GT(text.find(u" (110)\r\n"), head.size());
        EXPECT_EQ(text.find(u'\n', head.size()) + 1 + row.end.size() + rule.size(), text.size());
    }
    SetProductInformationCallbacks(nullptr, nullptr);
    detail::ForgetProductName();
}

} // namespace
