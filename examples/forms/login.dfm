object LoginForm: TLoginForm
  Left = 312
  Top = 180
  BorderStyle = bsDialog
  Caption = 'Sign in '#8212' Example'
  ClientHeight = 164
  ClientWidth = 320
  Color = clBtnFace
  Font.Charset = DEFAULT_CHARSET
  Font.Height = -11
  Font.Name = 'Tahoma'
  Font.Style = [fsBold]
  Position = poScreenCenter
  OnCreate = FormCreate
  object lblUser: TLabel
    Left = 16
    Top = 20
    Caption = '&User name:'
  end
  object edtUser: TEdit
    Left = 96
    Top = 16
    Width = 208
    TabOrder = 0
    TextHint = 'user@example.com'
  end
  object cbxServer: TComboBox
    Left = 96
    Top = 48
    Items.Strings = (
      'production'
      'staging'
      
        'a server with a rather long description that does not fit on a l' +
        'ine')
  end
  object grdHistory: TStringGrid
    Left = 16
    Top = 80
    ColWidths = (
      64
      120)
    Columns = <
      item
        Title.Caption = 'When'
        Width = 64
      end
      item
        Title.Caption = 'Who'
        Width = 120
      end>
  end
  object btnOK: TBitBtn
    Left = 148
    Top = 128
    Caption = 'OK'
    Default = True
    Glyph.Data = {
      093E73A8DD12477CB1E61B5085BAEF24598EC3F82D6297CC01366BA0D50A3F74
      A9DE13487DB2E71C5186BBF0255A8FC4F92E6398CD02376CA1D60B4075AADF14
      497EB3E81D52}
    ModalResult = 1
  end
end
