#ifndef ABSCONDINFO_H
#define ABSCONDINFO_H

#include <QObject>
#include <QString>

// The pendant's record of one program step ("condition"): the plug-in that executes it, the
// step's alias, its parameters as text and a description. Plug-ins derive their own records.
class AbsCondInfo : public QObject {
    Q_OBJECT

public:
    explicit AbsCondInfo(QObject* parent = nullptr);
    AbsCondInfo(const QString& condType, const QString& alias, const QString& xmlInfo,
                const QString& description, QObject* parent = nullptr);
    // Copies the four texts; the copy has no parent.
    AbsCondInfo(const AbsCondInfo& other);
    AbsCondInfo& operator=(const AbsCondInfo& other);
    virtual ~AbsCondInfo();

    QString getCondType() const;
    QString getAlias() const;
    QString getXmlInfo() const;
    QString getDescription() const;

    void setAlias(const QString& alias);
    void setXmlInfo(const QString& xmlInfo);
    void setDescription(const QString& description);

private:
    QString cond_type_;
    QString alias_;
    QString xml_info_;
    QString description_;
};

#endif
