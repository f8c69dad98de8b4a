// SPDX-License-Identifier: MIT
#include "zeltools/foundation/product_information.h"

#include "zeltools/foundation/application_product_name.h"
#include "zeltools/platform/system_information.h"

#include <atomic>

namespace {

using WideString = CXTString<char16_t>;

WideString DefaultProductText() {
    return GetInternalProductName(false);
}

WideString DefaultLicenceText() {
    return WideString(u"No licence information");
}

std::atomic<ProductTextCallback> productTextCallback{&DefaultProductText};
std::atomic<ProductTextCallback> licenceTextCallback{&DefaultLicenceText};

constexpr char16_t rule[] = u"------------------------------------------\r\n";

} // namespace

void SetProductInformationCallbacks(ProductTextCallback productText, ProductTextCallback licenceText) {
    productTextCallback.store(productText ? productText : &DefaultProductText);
    licenceTextCallback.store(licenceText ? licenceText : &DefaultLicenceText);
}

CXTString<char16_t> BuildProductInformationText(CXTString<char16_t> const& version) {
    platform::SystemVersion const& system = platform::GetWinVer();
    WideString text(rule);
    text += u"Product information\r\n";
    text += rule;
    text += system.name.c_str();
    text.AppendFormat(u" (%u", system.code);
    if (system.servicePackMajor != 0) {
        text.AppendFormat(u", SP %u.%u", system.servicePackMajor, system.servicePackMinor);
    }
    text += u")\r\n";
    text += productTextCallback.load()();
    text += u" ";
    text += version;
    text += u"\r\n64-bit version\r\n";
    text += licenceTextCallback.load()();
    text += u"\r\n";
    text += rule;
    return text;
}
