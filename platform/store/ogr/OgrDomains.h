#pragma once

#include <memory>

#include "platform/data/Field.h"
#include "platform/store/ogr/OgrSession.h"

namespace qz {

// The domain that the store gives the field, its values converted to the field's type; nothing when it has none.
[[nodiscard]] std::shared_ptr<const Domain> domainOf(GDALDataset& dataset, const OGRFieldDefn& definition,
                                                     const Field& field);

} // namespace qz
