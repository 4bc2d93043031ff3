#include "update/server_address.h"

QUrl updateInfoAddress() {
    return QUrl(TORVEL_UPDATE_SERVER "/plugin_info/");
}
