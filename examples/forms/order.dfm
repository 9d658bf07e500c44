object frmOrder: TForm
  Left = 200
  Top = 120
  Width = 480
  Height = 300
  Caption = 'Channel order'
  object pnlTop: TPanel
    Left = 0
    Top = 0
    Width = 480
    Height = 44
    Align = alTop
    object lblName: TLabel
      Left = 12
      Top = 14
      Width = 80
      Height = 16
      Caption = 'Group name:'
    end
    object edtName: TEdit
      Left = 100
      Top = 10
      Width = 220
      Height = 24
      Text = 'Beam {1-4}'
    end
    object chkSorted: TCheckBox
      Left = 336
      Top = 12
      Width = 120
      Height = 20
      Caption = 'Keep sorted'
      Checked = True
    end
  end
  object pnlButtons: TPanel
    Left = 0
    Top = 256
    Width = 480
    Height = 44
    Align = alBottom
    object btnOK: TButton
      Left = 292
      Top = 8
      Width = 85
      Height = 28
      Caption = 'OK'
      Default = True
      ModalResult = 1
    end
    object btnCancel: TButton
      Left = 384
      Top = 8
      Width = 85
      Height = 28
      Cancel = True
      Caption = 'Cancel'
      ModalResult = 2
    end
  end
  object pcMain: TPageControl
    Left = 0
    Top = 44
    Width = 480
    Height = 212
    ActivePage = tsChannels
    Align = alClient
    object tsChannels: TTabSheet
      Caption = 'Channels'
      object lbChannels: TListBox
        Left = 8
        Top = 8
        Width = 220
        Height = 150
        Items.Strings = (
          'Beam 1'
          'Beam 2'
          'Beam 3'
          'Beam 4')
      end
      object cbUnits: TComboBox
        Left = 240
        Top = 8
        Width = 200
        Height = 24
        Style = csDropDownList
        ItemIndex = 0
        Text = 'Millimetres'
        Items.Strings = (
          'Millimetres'
          'Inches')
      end
    end
    object tsNotes: TTabSheet
      Caption = 'Notes'
      object memNotes: TMemo
        Left = 8
        Top = 8
        Width = 440
        Height = 150
        Lines.Strings = (
          'Channels are numbered from 1.'
          'Gaps are kept as separate groups.')
      end
    end
  end
end
