#pragma once

#include <memory>

#include "platform/data/FeatureSource.h"
#include "platform/store/ogr/FormatRules.h"
#include "platform/store/ogr/OgrSession.h"

namespace qz {

// Rows between GDAL and this library, for one table. Attributes follow the object id and, when there is one, the shape.
class OgrRecordMapper {
public:
    OgrRecordMapper(const Schema& schema, const FormatRules& rules) : schema_(schema), rules_(rules) {}

    // Index of GDAL's field 0 among the schema's.
    [[nodiscard]] std::size_t firstAttribute() const { return schema_.shapeField ? 2 : 1; }

    [[nodiscard]] RecordPtr record(const OGRFeature& feature) const;
    // All values and the shape; the object id too.
    void setAll(OGRFeature& feature, const FeatureRecord& record) const;
    // Only what changed; a field that is unset in `feature` and didn't change stays unset.
    void setChangedValues(OGRFeature& feature, const RecordChange& change) const;
    void setShape(OGRFeature& feature, const FeatureRecord& record) const;

private:
    [[nodiscard]] Value value(const OGRFeature& feature, int index) const;
    [[nodiscard]] Value storedDate(const OGRFeature& feature, int index) const;
    [[nodiscard]] Geometry shapeOf(const OGRGeometry& stored, const OGRFeature& feature) const;
    void setValue(OGRFeature& feature, std::size_t field, const Value& value) const;

    const Schema& schema_;
    const FormatRules& rules_;
};

// GDAL 3.6 reads dates before 1970 from file geodatabases one second late, since it rounds towards zero.
void correctOldDates(OGRFeature& feature);

} // namespace qz
