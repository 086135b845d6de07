#include "platform/store/ogr/OgrDomains.h"

#include "platform/Error.h"

namespace qz {

namespace {

// Text that the field can't hold stays text, so that it is shown and never equals a value of the field.
Value typedValue(const Field& field, const char* text) {
    try {
        return convertedTo(field, std::string(text));
    } catch (const PlatformError&) {
        return std::string(text);
    }
}

CodedValueDomain codedValues(const OGRCodedFieldDomain& domain, const Field& field) {
    CodedValueDomain result;
    for (const OGRCodedValue* code = domain.GetEnumeration(); code->pszCode != nullptr; ++code) {
        result.codes.emplace_back(typedValue(field, code->pszCode), code->pszValue == nullptr ? "" : code->pszValue);
    }
    return result;
}

Value limit(const OGRField& raw, OGRFieldType type) {
    if (OGR_RawField_IsUnset(&raw) != 0 || OGR_RawField_IsNull(&raw) != 0) {
        return {};
    }
    switch (type) {
    case OFTInteger:
        return static_cast<std::int32_t>(raw.Integer);
    case OFTInteger64:
        return static_cast<std::int64_t>(raw.Integer64);
    case OFTReal:
        return raw.Real;
    case OFTDateTime:
        return DateTime{.year = raw.Date.Year,
                        .month = raw.Date.Month,
                        .day = raw.Date.Day,
                        .hour = raw.Date.Hour,
                        .minute = raw.Date.Minute,
                        .timeZone = raw.Date.TZFlag,
                        .second = static_cast<double>(raw.Date.Second)};
    default:
        return {};
    }
}

Value typedLimit(const Field& field, const OGRField& raw, OGRFieldType type) {
    const Value value = limit(raw, type);
    return isNull(value) || !checkValue(field, value) ? value : convertedTo(field, value);
}

RangeDomain range(const OGRRangeFieldDomain& domain, const Field& field) {
    bool included = true;
    const OGRFieldType type = domain.GetFieldType();
    return {.minimum = typedLimit(field, domain.GetMin(included), type),
            .maximum = typedLimit(field, domain.GetMax(included), type)};
}

} // namespace

std::shared_ptr<const Domain> domainOf(GDALDataset& dataset, const OGRFieldDefn& definition, const Field& field) {
    const std::string& name = definition.GetDomainName();
    const OGRFieldDomain* domain = name.empty() ? nullptr : dataset.GetFieldDomain(name);
    if (domain == nullptr) {
        return nullptr;
    }
    if (const auto* coded = dynamic_cast<const OGRCodedFieldDomain*>(domain)) {
        return std::make_shared<const Domain>(Domain{name, codedValues(*coded, field)});
    }
    if (const auto* limits = dynamic_cast<const OGRRangeFieldDomain*>(domain)) {
        return std::make_shared<const Domain>(Domain{name, range(*limits, field)});
    }
    return std::make_shared<const Domain>(Domain{name, OtherDomain{domain->GetDescription()}});
}

} // namespace qz
