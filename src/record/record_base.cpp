#include <dorvdl/record/record_base.h>

namespace dorvdl::record {

RecordBase::~RecordBase() = default;

bool RecordBase::IsValid() const { return primary_key() > 0; }

void RecordBase::ToJson(Json::Value& json) const {
  if (json.isObject() || json.isArray()) {
    json.clear();
  } else {
    json = Json::Value();  // clear() throws on texts and numbers
  }
}

}  // namespace dorvdl::record
