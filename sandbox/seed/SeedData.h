#pragma once

namespace sandbox {

/// The data files, made part of the program when it is built.
extern char const kDatabaseData[];
extern char const kUnitData[];
extern char const kUnitSystemData[];
extern char const kCurrencyData[];
extern char const kMetalData[];
extern char const kMaterialData[];
extern char const kProcessData[];
extern char const kProducerData[];
extern char const kReferenceData[];
extern char const kElementData[];
extern char const kValueData[];
extern char const kLinkData[];

}  // namespace sandbox
