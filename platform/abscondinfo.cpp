#include "platform/abscondinfo.h"

AbsCondInfo::AbsCondInfo(QObject* parent) : QObject(parent) {}

AbsCondInfo::AbsCondInfo(const QString& condType, const QString& alias, const QString& xmlInfo,
                         const QString& description, QObject* parent)
    : QObject(parent),
      cond_type_(condType),
      alias_(alias),
      xml_info_(xmlInfo),
      description_(description) {}

AbsCondInfo::AbsCondInfo(const AbsCondInfo& other)
    : QObject(nullptr),
      cond_type_(other.cond_type_),
      alias_(other.alias_),
      xml_info_(other.xml_info_),
      description_(other.description_) {}

AbsCondInfo& AbsCondInfo::operator=(const AbsCondInfo& other) {
    cond_type_ = other.cond_type_;
    alias_ = other.alias_;
    xml_info_ = other.xml_info_;
    description_ = other.description_;
    return *this;
}

AbsCondInfo::~AbsCondInfo() = default;

QString AbsCondInfo::getCondType() const {
    return cond_type_;
}

QString AbsCondInfo::getAlias() const {
    return alias_;
}

QString AbsCondInfo::getXmlInfo() const {
    return xml_info_;
}

QString AbsCondInfo::getDescription() const {
    return description_;
}

void AbsCondInfo::setAlias(const QString& alias) {
    alias_ = alias;
}

void AbsCondInfo::setXmlInfo(const QString& xmlInfo) {
    xml_info_ = xmlInfo;
}

void AbsCondInfo::setDescription(const QString& description) {
    description_ = description;
}
