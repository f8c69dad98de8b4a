// SPDX-License-Identifier: MIT
#include "zeltools/foundation/application_product_name.h"

#include "zeltools/foundation/application_data.h"
#include "zeltools/foundation/application_path.h"
#include "zeltools/foundation/application_preferences.h"
#include "zeltools/process/application_lock_private.h"
#include "zeltools/process/xsingle_lock.h"

namespace {

/// Guarded by ApplicationLock; never destroyed, so that code that runs at exit may ask too.
struct Product {
    CXTString<char16_t> name; // empty until it is set or asked for
    int version = 0;
};

Product& TheProduct() {
    static Product& product = *new Product;
    return product;
}

} // namespace

void SetInternalProductName(CXTString<char16_t> const& name, int version, bool resetPaths) {
    CXSingleLock const hold(&ApplicationLock(), true);
    TheProduct().name = name;
    TheProduct().version = version;
    if (resetPaths) {
        detail::ForgetVersionedDataPaths();
        detail::ForgetPreferencesPaths();
    }
}

CXTString<char16_t> GetInternalProductName(bool withVersion) {
    CXSingleLock const hold(&ApplicationLock(), true);
    Product& product = TheProduct();
    if (product.name.IsEmpty()) {
        product.name = GetApplicationName(true);
        return product.name;
    }
    CXTString<char16_t> name(product.name);
    if (withVersion && product.version != 0) {
        name.AppendFormat(u" %d", product.version);
    }
    return name;
}

namespace detail {

int ProductVersion() {
    CXSingleLock const hold(&ApplicationLock(), true);
    return TheProduct().version;
}

void ForgetProductName() {
    CXSingleLock const hold(&ApplicationLock(), true);
    TheProduct().name.Empty();
}

} // namespace detail
