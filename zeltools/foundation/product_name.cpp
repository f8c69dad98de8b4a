// SPDX-License-Identifier: MIT
#include "zeltools/foundation/product_name.h"

#include "zeltools/foundation/application_identity_private.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/xsingle_lock.h"

void SetInternalProductName(CXTString<char16_t> const& name, int versionNumber, bool resetPaths) {
    CXSingleLock const holder(&ApplicationLock(), true);
    detail::ApplicationIdentity& identity = detail::Identity();
    identity.productName = std::make_unique<CXTString<char16_t>>(name);
    identity.versionNumber = static_cast<unsigned int>(versionNumber);
    if (resetPaths) {
        identity.commonData.Empty();
        identity.userData.Empty();
        identity.commonPreferences.Empty();
        identity.userPreferences.Empty();
        identity.preferencesFile.Empty();
    }
}

CXTString<char16_t> GetInternalProductName(bool withVersion) {
    CXSingleLock const holder(&ApplicationLock(), true);
    detail::ApplicationIdentity& identity = detail::Identity();
    if (!identity.productName) {
        identity.productName = std::make_unique<CXTString<char16_t>>(GetApplicationName(true));
        return *identity.productName;
    }
    CXTString<char16_t> name = *identity.productName;
    if (withVersion && identity.versionNumber != 0) {
        name.AppendFormat(u" %d", identity.versionNumber);
    }
    return name;
}
