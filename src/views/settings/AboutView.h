#pragma once

#include <QUrl>
#include <QWidget>

class QLabel;

/// The "About" tab: the symbol, name, version, tagline and maker.
class AboutView : public QWidget {
    Q_OBJECT
public:
    explicit AboutView(QWidget* parent = nullptr);

    /// The maker's web site, opened in the default browser by the "Orrindale" link.
    static QUrl makerSite();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void drawSymbol();

    QLabel* symbol;
};
