#pragma once

#include "console/endpointrecord.h"

#include <QAbstractTableModel>
#include <QList>

/// The rows of the endpoint table. Read-only for the view: all changes come through the setters. It
/// knows nothing of the configuration file, and it takes what it is given: two records of one policy
/// or two endpoints with the same URL are no error here.
///
/// Rows are numbered from 0. Every operation that takes a row ignores one that is out of range.
class VeskServerConfigModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        NumberColumn,
        ProtocolColumn,
        UrlColumn,
        SecurityColumn,
        ColumnCount
    };

    explicit VeskServerConfigModel(QObject* parent = nullptr);
    ~VeskServerConfigModel() override;

    /// The number of records, whatever the parent.
    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override;

    /// 4, and 0 for a valid parent: the table has no tree below it.
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;

    /// Answers the display role only. The number is a string counted from 1; a protocol that is none
    /// of EndpointProtocol is invalid; the security column is the QStringList of the policy URIs in
    /// the order of the records, which VeskSecurityDelegate paints.
    [[nodiscard]] QVariant data(const QModelIndex& index,
                                int role = Qt::DisplayRole) const override;

    /// The titles of the four columns; nothing else has a header.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

    /// Appends an endpoint.
    void addEndpoint(int protocol, const QString& url, const QString& stackUrl,
                     const QList<SecurityRecord>& securitySettings);

    /// Appends all endpoints in one insert operation; an empty list is none.
    void addEndpoints(const QList<EndpointRecord>& endpoints);

    void removeEndpoint(int row);

    /// Removes all endpoints in one remove operation, when there are any.
    void clear();

    /// A copy of the record; an empty record for a row out of range.
    [[nodiscard]] EndpointRecord endpoint(int row) const;

    /// All records in the order of the rows.
    [[nodiscard]] const QList<EndpointRecord>& endpoints() const { return m_endpoints; }

    void setProtocol(int row, int protocol);
    void setUrl(int row, const QString& url);

    /// Tells nobody, for the table doesn't show it.
    void setStackUrl(int row, const QString& stackUrl);

    void setSecuritySettings(int row, const QList<SecurityRecord>& securitySettings);

private:
    [[nodiscard]] bool isRow(int row) const { return row >= 0 && row < m_endpoints.size(); }
    void emitChanged(int row, Column column);

    QList<EndpointRecord> m_endpoints;
};
