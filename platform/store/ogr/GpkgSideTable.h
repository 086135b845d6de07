#pragma once

#include "platform/data/Schema.h"
#include "platform/store/ogr/OgrSession.h"

namespace qz {

// What a GeoPackage has no place for is kept in a table of attributes of it, "qz_schema", which any GIS program can
// edit: one row a fact, with the columns table_name, field_name, property, code and text.
//
//   property           field_name  code  text
//   subtype            KIND        10    drilled
//   default subtype    KIND        10
//   not editable       AREA
//   feature dataset                      survey
//
// Completes the schema with the rows for its table; without such a table it stays. Throws DataError for a row that
// can't be understood.
void completeFromSideTable(GDALDataset& dataset, Schema& schema);

} // namespace qz
