#pragma once
#include "VekAppCore/Data/HPath.h"
#include "VekAppCore/Data/IVariantMap.h"
#include "VekAppCore/Data/VariantConverter.h"
#include "VekAppCore/Data/VariantJson.h"
#include "VekAppCore/Data/VekQVariant.h"
#include "VekAppCore/Data/VekQVariantDescriptorBase.h"
#include "VekAppCore/Data/VekQVariantMap.h"

/// @defgroup Data Tree of values
/// Variants that are maps, lists or values, with typed access, a binary stream and JSON. See [data
/// model](Docs/DataModel.md).
