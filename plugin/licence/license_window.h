#pragma once

#include <QWidget>

/// Shows the licence terms and asks for acceptance. Closing it without accepting changes nothing;
/// either way the window deletes itself.
class LicenseWindow : public QWidget {
    Q_OBJECT

  public:
    explicit LicenseWindow(QWidget* parent = nullptr);

  Q_SIGNALS:
    /// The terms have been accepted.
    void licenseValidated();

  private Q_SLOTS:
    /// Stores the acceptance, hides, reports it and closes. What could not be stored holds for this
    /// time only, which a warning tells. Pressed again while the report is on its way: nothing.
    void acceptLicense();

  private:
    bool m_isAccepted = false;
};
