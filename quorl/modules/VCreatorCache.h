#pragma once

#include <quorl/Export.h>
#include <quorl/Forward.h>

namespace Quorl
{

/// Writes which module provides which creator, loader and object, so that the next start can know
/// them without loading anything. Said domain by domain on standard output.
///
/// The file, little-endian, strings as `Tolmen::fputstring` writes them, nothing in between:
///
/// | item                                         | size   |
/// |----------------------------------------------|--------|
/// | number of domains                            | 8      |
/// | for each domain: readable name               | string |
/// | number of lines of the priority index        | 8      |
/// | for each line: priority                      | 4      |
/// | and name                                     | string |
/// | number of entries of the name table          | 8      |
/// | for each entry: name, path of its module     | string |
/// | size of that file, the low 32 bits           | 4      |
/// | when it was last changed, seconds since 1970 | 8      |
///
/// An entry whose module file is not there, so each without a module, is 16 zero bytes. One without
/// a record is left out, though it is counted. Deliberate, both: readers lose step there.
/// \return false if the file cannot be opened. One that cannot be written to its end is left empty,
/// which reads as a cache of nothing.
QUORL_API bool SaveVCreatorMapTypes(const string& file);

/// Reads such a file, and enters what it tells as entries that wait for their modules. To be done
/// before directories are opened, which then pass over these modules.
///
/// Each entry decides for itself: it is not used if the module's file is another one by now, if its
/// domain is not there, or if it is provided already. This and more is said on standard output. Of
/// what tells no size, as a pipe or a device, 16 MiB are read at most.
/// \return false if the file cannot be opened; true whatever is in it.
QUORL_API bool LoadVCreatorMapTypes(const string& file);

} // namespace Quorl
