// The box with a QR code and all addresses, for connecting a phone.
#pragma once

#include "app/connect_text.h"

#include <QDialog>

namespace lumbrine {

class ConnectBox final : public QDialog {
public:
    ConnectBox(const ConnectText& text, QWidget* parent);
};

} // namespace lumbrine
