# SPDX-License-Identifier: MIT
# Reads lists of mutants: perl lees.pl namen LIST...      their names and tests
#                         perl lees.pl pas ROOT NAME LIST...  applies one below ROOT
# Exits with 1 where a pattern does not match its file exactly once.
use strict;
use warnings;

my $wat = shift @ARGV;
my ($wortel, $naam);
($wortel, $naam) = splice(@ARGV, 0, 2) if $wat eq 'pas';

sub letterlijk {
    my ($tekst) = @_;
    $tekst =~ s/\\(.)/$1 eq 'n' ? "\n" : $1/ge;
    return $tekst;
}

sub pas {
    my (%m) = @_;
    my $pad = "$wortel/$m{bestand}";
    open(my $in, '<', $pad) or die "$pad: $!\n";
    local $/;
    my $tekst = <$in>;
    close $in;
    my ($was, $wordt) = (letterlijk($m{was}), letterlijk($m{wordt}));
    my $plaats = index($tekst, $was);
    die "$m{mutant}: staat niet precies eenmaal in $m{bestand}\n"
        if $plaats < 0 || index($tekst, $was, $plaats + 1) >= 0;
    substr($tekst, $plaats, length $was) = $wordt;
    open(my $uit, '>', $pad) or die "$pad: $!\n";
    print $uit $tekst;
    close $uit or die "$pad: $!\n";
}

my %m;
my $gedaan = 0;
while (my $regel = <>) {
    chomp $regel;
    if ($regel =~ /^(mutant|breekt|proef|bestand|was|wordt) ?(.*)$/) {
        $m{$1} = $2;
        next unless $1 eq 'wordt';
        if ($wat eq 'namen') {
            print join("\t", @m{qw(mutant proef bestand breekt)}), "\n";
        } elsif ($m{mutant} eq $naam) {
            pas(%m);
            $gedaan = 1;
        }
        %m = ();
    } elsif ($regel ne '') {
        die "onleesbare regel: $regel\n";
    }
}
die "geen mutant '$naam'\n" if $wat eq 'pas' && !$gedaan;
