// SPDX-License-Identifier: MIT
// One plug-in of the zoo. Definitions say what is wrong with it:
//   ZOO_RELEASE=n   its release word; without, it has no version function
//   ZOO_ENTRY=name  its entry point; without, it has none
//   ZOO_ANSWER=n    what the entry answers to IoPluginEnumerate: 0 false, 1 an empty list, 2 its types
//   ZOO_NEEDS       calls a function that nobody has
#include "zeltools/files/file_ext.h"
#include "zeltools/foundation/xarray.h"

#include <cstdlib>

extern "C" {

#ifdef ZOO_NEEDS
void NobodyHasThisFunction();
#endif

#ifdef ZOO_RELEASE
__attribute__((visibility("default"))) unsigned int QuenbyGetPluginVersion() {
    return ZOO_RELEASE;
}
#endif

#ifdef ZOO_ENTRY
__attribute__((visibility("default"))) bool ZOO_ENTRY(IoPluginMode mode, void* argument) {
#ifdef ZOO_NEEDS
    NobodyHasThisFunction();
#endif
    if (mode == IoPluginRelease) {
        setenv("ZOO_RELEASED", "1", 1); // where the test can see it, since the library is gone afterwards
        return true;
    }
    if (mode != IoPluginEnumerate || ZOO_ANSWER == 0)
        return false;
    auto& types = *static_cast<CXArray<CFileExt>*>(argument);
    if (ZOO_ANSWER == 2) {
        types.Add(CFileExt(u"Without a name", u"|", FourCC("ZOO0"), FilePropertyLoad | FileKindBitmap, FileIdPlugin,
                           FileIdUnknown, nullptr));
        types.Add(CFileExt(u"Zoo images", u".zoo|.zo2", FourCC("ZOO1"), FilePropertyLoad | FileKindBitmap, FileIdPlugin,
                           FileIdUnknown, nullptr));
        types.Add(CFileExt(u"Zoo scenes", u".zoo3", FourCC("ZOO3"), FilePropertyLoad | FileKind3D, FileIdPlugin,
                           FileIdUnknown, nullptr));
    }
    return true;
}
#endif
}
