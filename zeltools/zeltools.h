// SPDX-License-Identifier: MIT
// Every public family at once. A host that minds its compile time includes what it uses instead; each header below
// stands alone and begins with what it is for.

#pragma once

#include <zeltools/foundation/api.h>
#include <zeltools/foundation/block_storage.h>
#include <zeltools/foundation/characters.h>
#include <zeltools/foundation/delete_ptr_safe.h>
#include <zeltools/foundation/exit_callbacks.h>
#include <zeltools/foundation/fpoint.h>
#include <zeltools/foundation/frect.h>
#include <zeltools/foundation/fsize.h>
#include <zeltools/foundation/hash_map.h>
#include <zeltools/foundation/hash_methods.h>
#include <zeltools/foundation/hash_table.h>
#include <zeltools/foundation/instanciated_object.h>
#include <zeltools/foundation/int_map.h>
#include <zeltools/foundation/invalid_arg.h>
#include <zeltools/foundation/length_units.h>
#include <zeltools/foundation/next_prime.h>
#include <zeltools/foundation/open_addressing.h>
#include <zeltools/foundation/rounded.h>
#include <zeltools/foundation/saturated.h>
#include <zeltools/foundation/scoped_values.h>
#include <zeltools/foundation/shared_object.h>
#include <zeltools/foundation/stack.h>
#include <zeltools/foundation/string_conversion.h>
#include <zeltools/foundation/task_memory.h>
#include <zeltools/foundation/text_format.h>
#include <zeltools/foundation/text_scan.h>
#include <zeltools/foundation/thread_exceptions.h>
#include <zeltools/foundation/unicode_conversion.h>
#include <zeltools/foundation/xarchive_exception.h>
#include <zeltools/foundation/xarray.h>
#include <zeltools/foundation/xchar_array.h>
#include <zeltools/foundation/xduration.h>
#include <zeltools/foundation/xexception.h>
#include <zeltools/foundation/xfile_exception.h>
#include <zeltools/foundation/xinternet_exception.h>
#include <zeltools/foundation/xlc_string.h>
#include <zeltools/foundation/xload_string.h>
#include <zeltools/foundation/xobject.h>
#include <zeltools/foundation/xpoint.h>
#include <zeltools/foundation/xrect.h>
#include <zeltools/foundation/xruntime_class.h>
#include <zeltools/foundation/xsize.h>
#include <zeltools/foundation/xstring.h>
#include <zeltools/foundation/xtime.h>
#include <zeltools/platform/system_records.h>
#include <zeltools/process/xcritical_section.h>
#include <zeltools/process/xsingle_lock.h>
