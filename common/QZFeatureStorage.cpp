#include "common/QZFeatureStorage.h"

#include <optional>

#include <fmt/format.h>

#include "common/ErrorExit.h"
#include "common/NumberText.h"
#include "common/QZFeatureClass.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/data/PlainText.h"

namespace qz {

namespace {

// The numbers are those that failures are reported with.
enum class Step {
    subtypes = 1,
    key = 11,
    item = 12,
    value = 13,
    keyDone = 19,
    workspace = 2,
    editInterface = 21,
    startSession = 3,
    write = 4,
    stopSession = 5,
    done = 6
};

// The subtype field of a class and the code that new features get.
struct DefaultSubtype {
    std::size_t field;
    std::int32_t code;
};

std::optional<DefaultSubtype> defaultSubtypeOf(const FeatureClass& featureClass) {
    const auto code = QZ_HasSubtypes(featureClass);
    if (!code) {
        return std::nullopt;
    }
    const Schema& schema = featureClass.schema();
    const auto field = schema.findField(schema.subtypes->field);
    if (!field) {
        throw PlatformError(fmt::format("{} has no field {} for its subtypes.", schema.name, schema.subtypes->field));
    }
    return DefaultSubtype{*field, *code};
}

bool standsForNull(const Value& item) {
    const auto* text = std::get_if<std::string>(&item);
    return isNull(item) || (text && equalIgnoringCase(*text, "<NULL>"));
}

// The value as a field of the type takes it; nothing when it doesn't.
std::optional<Value> qualified(const Value& value, FieldType type) {
    switch (type) {
    case FieldType::smallInteger:
    case FieldType::integer:
    case FieldType::single:
    case FieldType::doubleFloat:
        return isNumeric(value) ? std::optional(toNumber(value)) : std::nullopt;
    case FieldType::string:
        return value;
    case FieldType::date:
        if (const auto* text = std::get_if<std::string>(&value)) {
            const auto date = readDate(*text);
            return date ? std::optional<Value>(*date) : std::nullopt;
        }
        return std::holds_alternative<DateTime>(value) ? std::optional(value) : std::nullopt;
    default:
        return std::nullopt;
    }
}

// Writes a field dictionary into the rows of one class.
class FieldWriter {
public:
    FieldWriter(const FeatureClass& featureClass, Step& step)
        : class_(featureClass), step_(step), subtype_(defaultSubtypeOf(featureClass)) {}

    void setDefaultSubtype(Row& row) const {
        if (subtype_) {
            row.setValue(subtype_->field, subtype_->code);
        }
    }

    void write(Row& row, const Dictionary& values) {
        for (const Value& key : values.keys()) {
            step_ = Step::key;
            if (const auto field = class_.schema().findField(toText(key))) {
                step_ = Step::item;
                const Value& item = *values.find(key);
                step_ = Step::value;
                write(row, *field, item);
            }
            step_ = Step::keyDone;
        }
    }

private:
    void write(Row& row, std::size_t index, const Value& item) const {
        const Field& field = class_.schema().fields[index];
        if (standsForNull(item)) {
            writeNull(row, index, field);
        } else if (!QZ_ValidateFieldValue(class_, field.name, item)) {
            showMessage("Invalid value for field: " + field.name);
        } else if (const auto value = qualified(item, field.type)) {
            row.setValue(index, *value);
        }
    }

    void writeNull(Row& row, std::size_t index, const Field& field) const {
        if (!field.nullable || field.type > FieldType::date) {
            return;
        }
        const bool isSubtype = subtype_ && subtype_->field == index;
        row.setValue(index, isSubtype ? Value(subtype_->code) : Value());
    }

    const FeatureClass& class_;
    Step& step_;
    std::optional<DefaultSubtype> subtype_;
};

// Runs `write`, in a session of its own when the caller has none and the data live in a database.
template <typename Write> void writeInSession(FeatureClass& featureClass, bool bEditing, Step& step, Write write) {
    step = Step::workspace;
    const auto [workspace, kind] = QZ_GetWorkspaceFromFC(featureClass);
    step = Step::editInterface;
    const bool ownSession = !bEditing && kind != "shp";
    step = Step::startSession;
    if (ownSession) {
        workspace.startEditing();
        workspace.startEditOperation();
    }
    step = Step::write;
    write();
    step = Step::stopSession;
    if (ownSession) {
        workspace.stopEditOperation();
        workspace.stopEditing(true);
    }
    step = Step::done;
}

} // namespace

bool QZ_StoreFeature(const Geometry& geometry, FeatureClass& featureClass, bool bEditing, const Dictionary* fieldDic) {
    return withSteppedExit(" QZ_StoreFeature w=", Step::subtypes, false, [&](Step& step) {
        FieldWriter writer(featureClass, step);
        const FeaturePtr feature = featureClass.createFeature();
        writer.setDefaultSubtype(*feature);
        if (fieldDic) {
            writer.write(*feature, *fieldDic);
        }
        feature->setShape(geometry);
        writeInSession(featureClass, bEditing, step, [&] { feature->store(); });
        return true;
    });
}

bool QZ_UpdateAttributes(FeatureCursor& cursor, FeaturePtr& feature, FeatureClass& featureClass, bool bEditing,
                         const Dictionary* fieldDic) {
    const FeaturePtr row = std::move(feature);
    return withSteppedExit(" QZ_UpdateAttributes w=", Step::subtypes, false, [&](Step& step) {
        FieldWriter writer(featureClass, step);
        writer.setDefaultSubtype(*row);
        if (fieldDic) {
            writer.write(*row, *fieldDic);
        }
        writeInSession(featureClass, bEditing, step, [&] { cursor.update(*row); });
        return true;
    });
}

} // namespace qz
