// The box with a QR code and all addresses, for connecting a phone.
#pragma once

#include "app/connect_text.h"

#include <QDialog>
#include <functional>

namespace lumbrine {

class ConnectBox final : public QDialog {
public:
    // `showKeys` may be empty: then there is no button for it.
    ConnectBox(const ConnectText& text, const std::function<void()>& showKeys, QWidget* parent);
};

} // namespace lumbrine
