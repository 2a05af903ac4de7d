// The compiled flash dialog nibs load under GNUstep and wire up the window controller.
//
// Runs in a real X session (run-under-xvfb.sh), since loading a nib creates its window.
// The owner is a stand-in with the controller's outlets and action, so the nibs are
// checked apart from the controller's own behaviour.
#import <AppKit/AppKit.h>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

@interface NibOwnerStub : NSWindowController
{
@public
  NSTextField* labelTextField1;
  NSTextField* labelTextField2;
  NSTextField* labelTextField3;
  NSButton* button;
  NSImageCell* pluginlogoNSImageCell;
  NSImage* pluginlogo_PlaceHolderimage;
  NSView* varnlogo_PlaceHolder;
  int awakeCount;
  NSInteger clickedTag;
}
- (void) buttonClickedAction: (id)sender;
@end

@implementation NibOwnerStub

- (void) awakeFromNib
{
  awakeCount++;
}

- (void) buttonClickedAction: (id)sender
{
  clickedTag = [sender tag];
}

@end

namespace {

struct NibCase {
  const char* name;
  bool titled;
};

std::string PrintNibCase(const testing::TestParamInfo<NibCase>& info)
{
  return info.param.name;
}

void PrintTo(const NibCase& nib, std::ostream* out)
{
  *out << nib.name;
}

NSString* ResourcePath(const char* file)
{
  return [NSString stringWithFormat: @"%s/%s", XP_RESOURCES_DIR, file];
}

// The result code the flash dialog reports for its button (docs/flash.md).
constexpr NSInteger kButtonTag = 1;

class NibLoad : public testing::TestWithParam<NibCase> {
protected:
  void SetUp() override
  {
    pool_ = [[NSAutoreleasePool alloc] init];
    NSString* path = ResourcePath((std::string(GetParam().name) + ".nib").c_str());
    owner_ = [NibOwnerStub alloc];
    owner_ = [owner_ initWithWindowNibPath: path owner: owner_];
    window_ = [owner_ window];
    ASSERT_NE(window_, nil) << "no window loaded from " << [path UTF8String];
  }

  void TearDown() override
  {
    [owner_ close];
    [owner_ release];
    [pool_ release];
  }

  // Every view lies inside the window, so a view left out of the hierarchy shows up here.
  bool InContentView(NSView* view) const
  {
    return view != nil && [view isDescendantOf: [window_ contentView]];
  }

  NSAutoreleasePool* pool_ = nil;
  NibOwnerStub* owner_ = nil;
  NSWindow* window_ = nil;
};

TEST_P(NibLoad, ConnectsEveryOutlet)
{
  NSTextField* labels[] = {owner_->labelTextField1, owner_->labelTextField2, owner_->labelTextField3};
  for (NSTextField* label : labels)
    {
      ASSERT_TRUE([label isKindOfClass: [NSTextField class]]);
      EXPECT_TRUE(InContentView(label));
    }
  EXPECT_NE(owner_->labelTextField1, owner_->labelTextField2);
  EXPECT_NE(owner_->labelTextField2, owner_->labelTextField3);

  ASSERT_TRUE([owner_->button isKindOfClass: [NSButton class]]);
  EXPECT_TRUE(InContentView(owner_->button));
  EXPECT_TRUE([owner_->varnlogo_PlaceHolder isKindOfClass: [NSView class]]);
  EXPECT_TRUE(InContentView(owner_->varnlogo_PlaceHolder));
  EXPECT_TRUE([owner_->pluginlogo_PlaceHolderimage isKindOfClass: [NSImage class]]);

  // The logo cell must be the cell an image view draws, or a logo given to it never shows.
  ASSERT_TRUE([owner_->pluginlogoNSImageCell isKindOfClass: [NSImageCell class]]);
  NSArray* views = [[window_ contentView] subviews];
  NSImageView* logoView = nil;
  for (NSUInteger i = 0; i < [views count]; i++)
    {
      id view = [views objectAtIndex: i];
      if ([view isKindOfClass: [NSImageView class]] && [view cell] == owner_->pluginlogoNSImageCell)
        logoView = view;
    }
  EXPECT_NE(logoView, nil);
}

TEST_P(NibLoad, ButtonSendsItsTagToTheOwner)
{
  EXPECT_EQ([owner_->button target], owner_);
  EXPECT_TRUE(sel_isEqual([owner_->button action], @selector(buttonClickedAction:)));
  EXPECT_EQ([owner_->button tag], kButtonTag);

  owner_->clickedTag = -1;
  [owner_->button performClick: nil];
  EXPECT_EQ(owner_->clickedTag, kButtonTag);
}

TEST_P(NibLoad, WindowHasTheNibsStyleAndSize)
{
  if (GetParam().titled)
    EXPECT_EQ([window_ styleMask], (NSUInteger)NSTitledWindowMask);
  else
    EXPECT_EQ([window_ styleMask], (NSUInteger)NSBorderlessWindowMask);
  NSSize size = [[window_ contentView] frame].size;
  EXPECT_EQ(size.width, 420);
  EXPECT_EQ(size.height, 150);
}

TEST_P(NibLoad, WindowStaysHiddenUntilShown)
{
  EXPECT_FALSE([window_ isVisible]);
}

TEST_P(NibLoad, OwnerWakesOnce)
{
  EXPECT_EQ(owner_->awakeCount, 1);
}

// A font without a size in the xib decodes to a garbage size and draws specks.
TEST_P(NibLoad, TextKeepsItsFontSize)
{
  EXPECT_EQ([[owner_->labelTextField1 font] pointSize], 13);
  EXPECT_EQ([[owner_->labelTextField2 font] pointSize], 13);
  EXPECT_EQ([[owner_->labelTextField3 font] pointSize], 13);
  EXPECT_EQ([[owner_->button font] pointSize], 13);
}

TEST_P(NibLoad, ButtonAndLabelsFitTheirTexts)
{
  [owner_->button setTitle: @"Please wait"];
  EXPECT_LE([[owner_->button cell] cellSize].width, [owner_->button frame].size.width);

  [owner_->labelTextField1 setStringValue: @"The plug-in is updating its settings"];
  EXPECT_LE([[owner_->labelTextField1 cell] cellSize].width, [owner_->labelTextField1 frame].size.width);
  EXPECT_LE([[owner_->labelTextField1 cell] cellSize].height, [owner_->labelTextField1 frame].size.height);
}

INSTANTIATE_TEST_SUITE_P(FlashDialogs, NibLoad,
                         testing::Values(NibCase{"Flash7_FlashDialog", true},
                                         NibCase{"Flash7_FlashDialogNoTitleBar", false}),
                         PrintNibCase);

TEST(PluginLogo, LoadsAsA64PointImage)
{
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSImage* logo = [[[NSImage alloc] initWithContentsOfFile: ResourcePath("PluginLogo.png")] autorelease];
  ASSERT_NE(logo, nil);
  EXPECT_EQ([logo size].width, 64);
  EXPECT_EQ([logo size].height, 64);
  [pool release];
}

}  // namespace

int main(int argc, char** argv)
{
  testing::InitGoogleTest(&argc, argv);
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  [NSApplication sharedApplication];
  int status = RUN_ALL_TESTS();
  [pool release];
  return status;
}
