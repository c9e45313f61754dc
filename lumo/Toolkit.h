#pragma once

/// The toolkit: what programs that want data are written against. Link `Lumo::Toolkit`. The exact
/// library below it has an include of its own, `lumo/LumoServiceLayer.h`.
#include "lumo/toolkit/Arrow.h"
#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Catalogue.h"
#include "lumo/toolkit/Client.h"
#include "lumo/toolkit/Columns.h"
#include "lumo/toolkit/Condition.h"
#include "lumo/toolkit/DatabaseInfo.h"
#include "lumo/toolkit/Doctor.h"
#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Import.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Options.h"
#include "lumo/toolkit/Partition.h"
#include "lumo/toolkit/RecordHead.h"
#include "lumo/toolkit/Records.h"
#include "lumo/toolkit/Selection.h"
#include "lumo/toolkit/Units.h"
#include "lumo/toolkit/Value.h"
