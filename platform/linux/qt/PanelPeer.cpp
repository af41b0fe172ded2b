#include "platform/linux/qt/PanelPeer.h"

#include <QSurfaceFormat>
#include <QVariant>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/linux/qt/ChromePainter.h"
#include "platform/linux/qt/PanelProperties.h"
#include "platform/linux/qt/ScreenList.h"

namespace vistrel::platform::linux_desktop {

namespace {

QString nativeTitle(const Window& window) {
  if (window.title().empty()) return QStringLiteral("Vistrel");
  return QStringLiteral("Vistrel — ") + QString::fromStdString(window.title());
}

}  // namespace

PanelPeer::PanelPeer(Window& window, std::shared_ptr<PeerHost> host)
    : HostedPeer(std::move(host)), window_(window) {
  repaint_.setSingleShot(true);
  QObject::connect(&repaint_, &QTimer::timeout, &repaint_, [this] { repaint(); });
}

PanelPeer::~PanelPeer() { releaseNative(); }

void PanelPeer::frameDidChange(bool /*display*/, bool /*animate*/) { place(); }

void PanelPeer::propertiesDidChange() {
  if (!native_) return;
  native_->setTitle(nativeTitle(window_));
  bindResizing(*native_, wholePoints(window_.contentMinSize()), placed_.current().size());
}

void PanelPeer::contentViewDidChange() { scheduleRepaint(); }

void PanelPeer::viewDidChange(View& view, ViewChange change) {
  if (change != ViewChange::layerContents) return scheduleRepaint();
  if (!surface_ || view.isHiddenOrHasHiddenAncestor()) return;
  const auto& contents = view.layer()->contents();
  if (view.layer() == contentsLayer_ && contents) return showContents(contents);
  scheduleRepaint();  // an opening for the picture comes or goes
}

void PanelPeer::orderFrontRegardless() {
  if (!host().isOpen()) return;
  if (!native_) makeNative();
  const auto id = static_cast<std::uint32_t>(native_->winId());
  if (!native_->isVisible()) {
    // Managers take the state away from a window that is withdrawn.
    host().desktop().markAsFloatingPanel(id);
    repaint();
    native_->show();
  }
  host().desktop().raise(id);
}

void PanelPeer::makeKeyAndOrderFront() { orderFrontRegardless(); }

void PanelPeer::orderOut() {
  if (native_) native_->hide();
}

void PanelPeer::close() { releaseNative(); }

std::optional<Rect> PanelPeer::adoptAutosavedFrame(const std::string& /*name*/) { return {}; }

void PanelPeer::retire() { releaseNative(); }

void PanelPeer::makeNative() {
  native_.reset(new PanelWindow(
      window_, [this] { nativeWasPlaced(); },
      [this] {
        window_.peerDidChangeBackingProperties();
        scheduleRepaint();
      }));
  QSurfaceFormat format;
  format.setAlphaBufferSize(8);
  native_->setFormat(format);
  native_->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                    Qt::WindowDoesNotAcceptFocus);
  // The toolkit then tells the manager a user time of 0: not to be activated when it is mapped.
  native_->setProperty("_q_showWithoutActivating", QVariant(true));
  native_->setTitle(nativeTitle(window_));
  place();
  native_->create();
  const auto id = static_cast<xcb_window_t>(native_->winId());
  completePanelWindow(id);
  surface_ = host().desktop().makePanelSurface(id);
}

void PanelPeer::releaseNative() {
  if (surface_) surface_->detach();
  surface_.reset();
  native_.reset();
  placed_ = {};
  contentsLayer_ = nullptr;
  shownContents_.reset();
  repaint_.stop();
}

void PanelPeer::place() {
  if (!native_) return;
  const QRect from = placed_.current();
  const QRect to = ScreenList::space().toDesktop(window_.frame());
  if (!placed_.ask(to)) return;
  if (to.size() != from.size()) scheduleRepaint();
  placeNative(*native_, from, to, wholePoints(window_.contentMinSize()));
}

void PanelPeer::nativeWasPlaced() {
  const QRect geometry = native_->geometry();
  if (!placed_.isMovedTo(geometry)) return;
  bindResizing(*native_, wholePoints(window_.contentMinSize()), geometry.size());
  scheduleRepaint();
  window_.peerDidSetFrame(ScreenList::space().fromDesktop(geometry));
}

void PanelPeer::scheduleRepaint() {
  if (native_) repaint_.start();
}

void PanelPeer::repaint() {
  repaint_.stop();
  window_.layoutIfNeeded();
  native_->reportToScreenReaders();
  const double pixelsPerPoint = native_->devicePixelRatio();
  const PixelRect area = toPixels(QRectF(QPointF(), placed_.current().size()), pixelsPerPoint);
  auto painted = paintChrome(*window_.contentView(), area.width, area.height, pixelsPerPoint);
  surface_->setChrome(std::move(painted.chrome));
  contentsLayer_ = painted.contentsLayer;
  if (contentsLayer_ != nullptr) showContents(contentsLayer_->contents());
}

void PanelPeer::showContents(std::shared_ptr<const Image> image) {
  if (image == shownContents_) return;
  shownContents_ = image;
  surface_->setContents(std::move(image));
}

}  // namespace vistrel::platform::linux_desktop
